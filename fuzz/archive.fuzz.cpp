// Reads every kind of record. The first byte chooses: 0 to 39 a request, 40 to 79 a response, 80 a variant, 81 a tag,
// 82 an attribute value, 83 a buffer as the export gets it; the rest are the bytes behind the archive's header.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "RuntimeCore/Requests/Catalogue.h"
#include "RuntimeCore/Selectors/Values/ReadDynamic.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace {

using namespace Zorvex;

// What was read once must be written and read again as the same bytes.
template <class Record>
void Exercise(const RequestBuffer& bytes) {
    Record record;
    Archive reader(bytes);
    readField(reader, record);
    Archive first;
    writeField(first, record);
    Record copy;
    Archive again(first.buffer());
    readField(again, copy);
    Archive second;
    writeField(second, copy);
    if (!(first.buffer() == second.buffer())) std::abort();
}

void ExerciseKind(std::uint8_t kind, const RequestBuffer& bytes) {
    if (kind < kRequestCount) {
        WithRequestType(static_cast<RequestId>(kind), [&]<class Request>() { Exercise<Request>(bytes); });
    } else if (kind < 2 * kRequestCount) {
        WithRequestType(static_cast<RequestId>(kind - kRequestCount), [&]<class Request>() {
            Exercise<typename Request::Response>(bytes);
        });
    } else if (kind == 80) {
        Exercise<CComVariant>(bytes);
    } else if (kind == 81) {
        Exercise<std::shared_ptr<ISelectorTag>>(bytes);
    } else if (kind == 82) {
        Exercise<std::shared_ptr<IAttrValue>>(bytes);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > (1u << 20)) return 0;
    const std::uint8_t kind = static_cast<std::uint8_t>(data[0] % 84);
    try {
        if (kind == 83) {
            Archive reader(RequestBuffer(data + 1, data + size));
            std::uint32_t id = 0;
            reader.read(id);
            return 0;
        }
        RequestBuffer bytes;
        const auto length = static_cast<std::uint32_t>(size + 3);
        bytes.append(&length, sizeof length);
        bytes.append(data + 1, size - 1);
        ExerciseKind(kind, bytes);
    } catch (const ArchiveException&) {
    } catch (const ComException&) {
    }
    return 0;
}
