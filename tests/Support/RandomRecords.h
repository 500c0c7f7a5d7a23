// Fills any record of the catalogue with random contents.
#pragma once

#include <memory>
#include <random>

#include "RuntimeCore/Requests/Catalogue.h"
#include "RuntimeCore/Selectors/Unified/ElementNotFoundError.h"
#include "RuntimeCore/Selectors/Values/SelectorTags.h"

namespace Zorvex::Testing {

class RandomRecords {
public:
    explicit RandomRecords(unsigned seed) : m_random(seed) {}

    template <class T>
    void Fill(T& value) {
        if constexpr (FieldRecord<T>) T::Fields(value, [this](const char*, auto& field) { this->Fill(field); });
        else if constexpr (std::is_enum_v<T>) value = static_cast<T>(m_random());
        else if constexpr (std::is_same_v<T, bool>) value = m_random() % 2;
        else if constexpr (std::is_floating_point_v<T>) value = static_cast<T>(m_random()) / 3;
        else if constexpr (sizeof(T) == 8 && std::is_integral_v<T>) value = static_cast<T>(std::uint64_t{m_random()} << 32 | m_random());
        else value = static_cast<T>(m_random());
    }
    void Fill(HWND& window) { window = reinterpret_cast<HWND>(static_cast<INT_PTR>(static_cast<std::int32_t>(m_random()))); }
    void Fill(POINT& point) { Fill(point.x), Fill(point.y); }
    void Fill(RECT& rectangle) { Fill(rectangle.left), Fill(rectangle.top), Fill(rectangle.right), Fill(rectangle.bottom); }
    void Fill(CString& text) {
        text.assign(m_random() % 6, L' ');
        for (wchar_t& unit : text) unit = static_cast<wchar_t>(1 + m_random() % 0xFFFF);
    }
    void Fill(CComVariant& variant) { FillVariant(variant, 3); }
    template <class T>
    void Fill(std::vector<T>& values) {
        values.resize(m_random() % 4);
        for (auto& value : values) Fill(value);
    }
    template <class Key, class Value, class Less>
    void Fill(std::map<Key, Value, Less>& values) {
        for (unsigned i = m_random() % 4; i > 0; --i) {
            Key key{};
            Fill(key);
            Fill(values[key]);
        }
    }
    void Fill(std::shared_ptr<StringValue>& pointer) {
        pointer = nullptr;
        if (m_random() % 4 == 0) return;
        CString text;
        Fill(text);
        pointer = std::make_shared<StringValue>(text);
        FillSettings(*pointer);
    }
    void Fill(std::shared_ptr<ISelectorTag>& tag) {
        switch (m_random() % 6) {
            case 0: tag = nullptr; return;
            case 1: tag = std::make_shared<WndTag>(); break;
            case 2: tag = std::make_shared<WebCtrlTag>(); break;
            case 3: tag = std::make_shared<UiAutoTag>(); break;
            default: tag = std::make_shared<AaTag>(); break;
        }
        for (const auto& [name, accessor] : tag->GetAttributeFactories()) {
            if (m_random() % 2) continue;
            auto value = accessor->CreateValue();
            if (auto* number = dynamic_cast<NumberValue*>(value.get())) number->SetValue(m_random());
            if (auto* text = dynamic_cast<StringValue*>(value.get())) {
                CString content;
                Fill(content);
                text->SetValue(content);
            }
            FillSettings(*value);
            tag->SetAttribute(name, value);
        }
        tag->SetTagFlagA(m_random() % 2);
        tag->SetTagFlagB(m_random() % 2);
    }
    void Fill(ScoreStatistics& statistics) { Fill(statistics.mean), Fill(statistics.count), Fill(statistics.sum); }
    void Fill(Search::SelectorEntry& entry) {
        Fill(entry.tags);
        Fill(entry.options.scope), Fill(entry.options.resultPolicy), Fill(entry.options.maxResults);
        Fill(entry.options.minimumScore), Fill(entry.options.optionG), Fill(entry.options.acceptHidden);
        Fill(entry.inheritedScore), Fill(entry.pendingAttributeCount);
    }
    void Fill(Search::AaCrossProcessSearchResult& result) {
        Fill(result.stats), Fill(result.id), Fill(result.parentId), Fill(result.score);
        Fill(result.identifier), Fill(result.rectangle);
    }
    void Fill(Search::CrossProcessResultSet& set) { Fill(set.limit), Fill(set.results); }
    void Fill(Search::CrossProcessSelectorResult& result) {
        Fill(result.limit), Fill(result.results), Fill(result.intermediate);
        if (m_random() % 2) result.error = std::make_unique<Search::ElementNotFoundError>(L"tag", L"name", L"x", true, false);
    }

private:
    void FillSettings(IAttrValue& value) {
        value.SetEnabled(m_random() % 2);
        value.SetCaseSensitive(m_random() % 2);
        value.SetMatchingType(m_random() % 5);
        value.SetFuzzyLevel(static_cast<double>(m_random() % 101) / 100);
    }
    void FillVariant(VARIANT& variant, int depth) {
        ::VariantClear(&variant);
        switch (m_random() % (depth > 0 ? 6 : 4)) {
            case 0: return;
            case 1: variant.vt = VT_I4, variant.lVal = static_cast<LONG>(m_random()); return;
            case 2: variant.vt = VT_R8, variant.dblVal = 0.5; return;
            case 3: CComVariant(L"text").DetachTo(variant); return;
            case 4: {
                SAFEARRAYBOUND bound = {static_cast<ULONG>(m_random() % 4), 0};
                variant.parray = ::SafeArrayCreate(VT_I4, 1, &bound);
                variant.vt = VT_ARRAY | VT_I4;
                return;
            }
            default: {
                SAFEARRAYBOUND bound = {static_cast<ULONG>(m_random() % 3), 0};
                variant.parray = ::SafeArrayCreate(VT_VARIANT, 1, &bound);
                variant.vt = VT_ARRAY | VT_VARIANT;
                for (ULONG i = 0; i < bound.cElements; ++i) FillVariant(static_cast<VARIANT*>(variant.parray->pvData)[i], depth - 1);
                return;
            }
        }
    }

    std::mt19937 m_random;
};

}  // namespace Zorvex::Testing
