// Reading on a small stack, with the simulated system's counts of what is allocated.
#include <gtest/gtest.h>
#include <pthread.h>

#include "Common/include/Archive.h"
#include "Platform/Simulated/System.h"
#include "tests/Support/ArchiveBytes.h"

namespace Zorvex {
namespace {

using Testing::ArchiveOf;
using Testing::ArchiveProblem;
using Testing::ComProblem;

// Runs `action` on a thread with 256 KiB of stack, which is as little as a target program's thread may have.
template <class Action>
void OnSmallStack(Action action) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes,
                             [](void* context) -> void* {
                                 (*static_cast<Action*>(context))();
                                 return nullptr;
                             },
                             &action),
              0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

RequestBuffer Nested(int depth) {
    Archive archive(-4);
    for (int i = 0; i < depth; ++i) {
        const VARTYPE type = VT_ARRAY | VT_VARIANT;
        archive.writeTag(ArchiveTag::Variant).writeBytes(&type, sizeof type).write(i + 1 < depth ? 1 : 0);
    }
    return archive.TakeBuffer();
}

TEST(ArchiveStack, AMillionNestedVariantsEndInAnExceptionOn256KiB) {
    const int arrays = Simulated::OutstandingBlocks(Simulated::Allocation::Array);
    std::string problem;
    OnSmallStack([&] {
        problem = ArchiveProblem([] {
            CComVariant variant;
            Archive(Nested(1'000'000)).read(variant);
        });
    });
    EXPECT_EQ(problem, "read: could not read variant type: 8204");
    EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::Array), arrays);
}

TEST(ArchiveStack, TheDeepestNestingIsReadWrittenCopiedAndClearedOn256KiB) {
    std::size_t size = 0;
    OnSmallStack([&] {
        CComVariant variant;
        Archive(Nested(Archive::kMaximumVariantNesting)).read(variant);
        const CComVariant copy(variant);
        Archive again;
        again.write(copy);
        size = again.buffer().size();
    });
    EXPECT_EQ(size, 4u + 8u * Archive::kMaximumVariantNesting);
}

TEST(ArchiveStack, HostileCountsAllocateNoArray) {
    const int arrays = Simulated::OutstandingBlocks(Simulated::Allocation::Array);
    Simulated::FailAllocation(Simulated::Allocation::Array, 1);
    CComVariant variant;
    EXPECT_EQ(ArchiveProblem([&] { ArchiveOf({8, 0x0C, 0x20, 1, 0xFF, 0xFF, 0xFF, 0x7F, 8, 0, 0}).read(variant); }),
              "readBytes: out-of-bounds access");
    // The armed failure is still there: nobody asked for an array.
    EXPECT_EQ(ComProblem([&] { ArchiveOf({8, 0x0C, 0x20, 1, 0, 0, 0, 0}).read(variant); }), E_INVALIDARG);
    EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::Array), arrays);
}

TEST(ArchiveStack, AFailedArrayCreationLeavesAnErrorInTheVariant) {
    Simulated::FailAllocation(Simulated::Allocation::Array, 1);
    CComVariant variant;
    EXPECT_EQ(ComProblem([&] { ArchiveOf({8, 3, 0x20, 1, 0, 0, 0, 0}).read(variant); }), E_INVALIDARG);
    EXPECT_EQ(variant.vt, VT_ERROR);
    EXPECT_EQ(variant.scode, E_INVALIDARG);
}

TEST(ArchiveStack, EveryFailingStringAllocationThrowsAndLeaksNothing) {
    const int strings = Simulated::OutstandingBlocks(Simulated::Allocation::String);
    const int arrays = Simulated::OutstandingBlocks(Simulated::Allocation::Array);
    for (unsigned nth = 1; nth <= 2; ++nth) {
        Simulated::FailAllocation(Simulated::Allocation::String, nth);
        CComVariant variant;
        EXPECT_EQ(ComProblem([&] {
                      ArchiveOf({8, 8, 0x20, 1, 2, 0, 0, 0, 2, 1, 0, 0, 0, 65, 0, 2, 0, 0, 0, 0}).read(variant);
                  }),
                  E_OUTOFMEMORY);
    }
    EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::String), strings);
    EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::Array), arrays);
}

TEST(ArchiveStack, BytesLieOnTheProcessHeapAndAllComeBack) {
    // Memory of a response belongs to the process heap, whoever frees it.
    const int blocks = Simulated::OutstandingBlocks(Simulated::Allocation::Heap);
    {
        Archive archive;
        archive.write(1);
        RequestBuffer taken = archive.TakeBuffer();
        EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::Heap), blocks + 2);
    }
    EXPECT_EQ(Simulated::OutstandingBlocks(Simulated::Allocation::Heap), blocks);
}

}  // namespace
}  // namespace Zorvex
