// The archive against a plain copy of the same bytes. Each benchmark has a memcpy twin of the same size.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "RuntimeCore/Requests/Catalogue.h"

namespace Zorvex {
namespace {

constexpr int kCount = 10'000;

std::vector<AAObjectIdentifier> Identifiers() {
    std::vector<AAObjectIdentifier> identifiers(kCount);
    for (int i = 0; i < kCount; ++i)
        identifiers[i] = {reinterpret_cast<HWND>(static_cast<INT_PTR>(0x10000 + i)), static_cast<std::uint32_t>(i), i % 7, 0, 4242, nullptr};
    return identifiers;
}

// Names as accessible elements have them, 5 to 60 units.
std::vector<CString> Texts() {
    std::vector<CString> texts(kCount);
    for (int i = 0; i < kCount; ++i) texts[i].assign(5 + i * 31 % 56, static_cast<wchar_t>(L'a' + i % 26));
    return texts;
}

template <class T>
RequestBuffer Encoded(const T& value) {
    Archive archive;
    writeField(archive, value);
    return archive.TakeBuffer();
}

void Report(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

// The yardstick of reading: what the reader's private copy costs anyhow.
void Copy(benchmark::State& state, const RequestBuffer& bytes) {
    std::vector<std::uint8_t> target(bytes.size());
    for (auto _ : state) {
        std::memcpy(target.data(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    Report(state, bytes.size());
}

void CopyIdentifiers(benchmark::State& state) { Copy(state, Encoded(Identifiers())); }
BENCHMARK(CopyIdentifiers);

void EncodeIdentifiers(benchmark::State& state) {
    const auto identifiers = Identifiers();
    const std::size_t size = Encoded(identifiers).size();
    for (auto _ : state) {
        Archive archive(static_cast<std::int32_t>(size));
        writeField(archive, identifiers);
        benchmark::DoNotOptimize(archive.buffer().data());
    }
    Report(state, size);
}
BENCHMARK(EncodeIdentifiers);

void DecodeIdentifiers(benchmark::State& state) {
    const RequestBuffer bytes = Encoded(Identifiers());
    for (auto _ : state) {
        Archive archive(bytes);
        std::vector<AAObjectIdentifier> identifiers;
        readField(archive, identifiers);
        benchmark::DoNotOptimize(identifiers.data());
    }
    Report(state, bytes.size());
}
BENCHMARK(DecodeIdentifiers);

void DecodeIdentifiersInPlace(benchmark::State& state) {
    const RequestBuffer bytes = Encoded(Identifiers());
    for (auto _ : state) {
        Archive archive(bytes);
        archive.expectTag(ArchiveTag::Vector, "");
        std::int32_t count = 0;
        archive.readCount(count);
        std::uint64_t sum = 0;  // every field is looked at, none is kept
        for (std::int32_t i = 0; i < count; ++i) {
            AAObjectIdentifier identifier;
            readField(archive, identifier);
            sum += identifier.containerId + identifier.clientPid + identifier.isDomAria + static_cast<std::uint32_t>(identifier.childId) +
                   reinterpret_cast<std::uintptr_t>(identifier.hWnd) + reinterpret_cast<std::uintptr_t>(identifier.originalWnd);
        }
        benchmark::DoNotOptimize(sum);
    }
    Report(state, bytes.size());
}
BENCHMARK(DecodeIdentifiersInPlace);

void CopyTexts(benchmark::State& state) { Copy(state, Encoded(Texts())); }
BENCHMARK(CopyTexts);

void EncodeTexts(benchmark::State& state) {
    const auto texts = Texts();
    const std::size_t size = Encoded(texts).size();
    for (auto _ : state) {
        Archive archive(static_cast<std::int32_t>(size));
        writeField(archive, texts);
        benchmark::DoNotOptimize(archive.buffer().data());
    }
    Report(state, size);
}
BENCHMARK(EncodeTexts);

void DecodeTextsAsViews(benchmark::State& state) {
    const RequestBuffer bytes = Encoded(Texts());
    std::vector<ArchiveText> texts;
    for (auto _ : state) {
        Archive archive(bytes);
        readField(archive, texts);
        benchmark::DoNotOptimize(texts.data());
    }
    Report(state, bytes.size());
}
BENCHMARK(DecodeTextsAsViews);

void DecodeTextsAsStrings(benchmark::State& state) {
    const RequestBuffer bytes = Encoded(Texts());
    for (auto _ : state) {
        Archive archive(bytes);
        std::vector<CString> texts;
        readField(archive, texts);
        benchmark::DoNotOptimize(texts.data());
    }
    Report(state, bytes.size());
}
BENCHMARK(DecodeTextsAsStrings);

}  // namespace
}  // namespace Zorvex
