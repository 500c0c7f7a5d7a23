// The ids on the way from the root of a search to an element, the root left out.
#pragma once

#include <cstdint>
#include <utility>

namespace Zorvex::Search {

// A value that shares what it has in common with others: extending a chain by one id costs one small block however
// long the chain is, and the children of one element share theirs whole. Not for use by two threads at once.
class AncestorChain {
public:
    AncestorChain() noexcept = default;
    AncestorChain(const AncestorChain& other) noexcept : m_nearest(other.m_nearest) {
        if (m_nearest) ++m_nearest->references;
    }
    AncestorChain(AncestorChain&& other) noexcept : m_nearest(std::exchange(other.m_nearest, nullptr)) {}
    ~AncestorChain() { Release(); }
    AncestorChain& operator=(AncestorChain other) noexcept {
        std::swap(m_nearest, other.m_nearest);
        return *this;
    }

    // The chain of an element with this id below the chain's nearest element.
    AncestorChain Extended(std::int64_t id) const {
        AncestorChain longer;
        longer.m_nearest = new Node{id, 1, m_nearest};
        if (m_nearest) ++m_nearest->references;
        return longer;
    }

    bool IsEmpty() const noexcept { return m_nearest == nullptr; }
    // Of a chain that isn't empty.
    std::int64_t NearestId() const noexcept { return m_nearest->id; }

    // Calls `visit(id)` from the nearest to the farthest until it answers false.
    template <class Visit>
    void ForEachFromNearest(Visit&& visit) const {
        for (const Node* node = m_nearest; node; node = node->above)
            if (!visit(node->id)) return;
    }

private:
    struct Node {
        std::int64_t id;
        std::uint32_t references;
        Node* above;
    };

    // A loop and no recursion: a tree may be as deep as its server likes.
    void Release() noexcept {
        while (m_nearest && --m_nearest->references == 0) {
            Node* above = m_nearest->above;
            delete m_nearest;
            m_nearest = above;
        }
        m_nearest = nullptr;
    }

    Node* m_nearest = nullptr;
};

}  // namespace Zorvex::Search
