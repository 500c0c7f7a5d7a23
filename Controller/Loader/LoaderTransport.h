// The transport of the typed client through the loader.
#pragma once

#include <memory>

#include "Controller/Client/Connection.h"
#include "Controller/Loader/ITarget.h"

namespace Zorvex::Loader {

// The client's word for a loader's problem; the loader's own, finer one stands at the head of the failure's text
// where it says more.
Client::Failure ToClientFailure(const LoadFailure& failure);

class LoaderTransport : public Client::Transport {
public:
    explicit LoaderTransport(std::unique_ptr<ITarget> target) : m_target(std::move(target)) {}

    std::optional<Client::Failure> Send(const RequestBuffer& request, RequestBuffer& response,
                                        std::chrono::milliseconds timeout) override;

    ITarget& Target() noexcept { return *m_target; }

private:
    std::unique_ptr<ITarget> m_target;
};

}  // namespace Zorvex::Loader
