#include "RuntimeCore/Selectors/Values/ReadDynamic.h"

#include "Common/include/Log.h"
#include "RuntimeCore/Selectors/Values/NumberValue.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"
#include "RuntimeCore/Selectors/Values/StringValue.h"
#include "RuntimeCore/Selectors/Values/VariantValue.h"

namespace Zorvex {

namespace {

template <class T>
std::shared_ptr<T> Make() {
    return std::make_shared<T>();
}

std::shared_ptr<ISelectorTag> MakeTag(std::uint32_t id) {
    switch (id) {
        case WndTag::kSerializationId: return Make<WndTag>();
        case HtmlTag::kSerializationId: return Make<HtmlTag>();
        case JavaTag::kSerializationId: return Make<JavaTag>();
        case NavigationTag::kSerializationId: return Make<NavigationTag>();
        case RdpTag::kSerializationId: return Make<RdpTag>();
        case SAPTag::kSerializationId: return Make<SAPTag>();
        case SLTag::kSerializationId: return Make<SLTag>();
        case UiAutoTag::kSerializationId: return Make<UiAutoTag>();
        case AaTag::kSerializationId: return Make<AaTag>();
        case QtTag::kSerializationId: return Make<QtTag>();
        case WpfTag::kSerializationId: return Make<WpfTag>();
        case WebCtrlTag::kSerializationId: return Make<WebCtrlTag>();
        // RdpAppTag isn't here, on purpose: it can be sent but not received.
        default: return nullptr;
    }
}

std::shared_ptr<IAttrValue> MakeValue(std::uint32_t id) {
    switch (id) {
        case StringValue::kSerializationId: return Make<StringValue>();
        case NumberValue::kSerializationId: return Make<NumberValue>();
        case VariantValue::kSerializationId: return Make<VariantValue>();
        default: return nullptr;
    }
}

}  // namespace

void readDynamic(Archive& archive, std::uint32_t id, std::shared_ptr<ISelectorTag>& pointer) {
    auto tag = MakeTag(id);
    if (!tag) {
        LogError("Serialization ID = %lu, not identified. Failed to read selector tag value from archive.", id);
        throw ArchiveException("readDynamic ISelectorTag: Serialization ID not identified");
    }
    tag->ReadFromArchive(archive);
    pointer = std::move(tag);
}

void readDynamic(Archive& archive, std::uint32_t id, std::shared_ptr<IAttrValue>& pointer) {
    auto value = MakeValue(id);
    if (!value) {
        LogError("Serialization ID = %lu, not identified. Failed to read dynamic attribute value from archive.", id);
        throw ArchiveException("readDynamic IAttrValue: Serialization ID not identified");
    }
    value->ReadFromArchive(archive);
    pointer = std::move(value);
}

}  // namespace Zorvex
