// The order of virtual operations is part of the binary interface: a host is not rebuilt with the library.

#include "Base/QxBase10/IHTTPClient.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <array>
#include <bit>
#include <cstddef>
#include <gtest/gtest.h>

namespace {

// The pointer to a virtual operation holds its place in the table in bytes, on some processors and one more.
template <class Operation>
std::size_t slotOf(Operation operation) {
    return std::bit_cast<std::array<std::size_t, 2>>(operation)[0] / sizeof(void*);
}

// A destructor takes two slots.
template <class Document>
struct Slots : Document {
    static std::array<std::size_t, 7> of() {
        return {slotOf(&Slots::getDeletedParentsCount),   slotOf(&Slots::getArchivedParents),
                slotOf(&Slots::getDeletedParents),        slotOf(&Slots::getInactiveParents),
                slotOf(&Slots::getAccessDeniedParents),   slotOf(&Slots::getDirectReferencedFiles),
                slotOf(&Slots::sendFullAssemblyAnalytics)};
    }
};

struct ProtectedSlot : Orvane::Payloads::FullAssemblyData {
    static std::size_t get() { return slotOf(&ProtectedSlot::getParentByStatus); }
};

TEST(VirtualSlots, StandInTheirOrder) {
    const std::array<std::size_t, 7> expected{0, 1, 2, 3, 4, 5, 8};
    EXPECT_EQ(Slots<Orvane::Payloads::FullAssemblyData>::of(), expected);
    EXPECT_EQ(Slots<Orvane::Payloads::FullAssemblyDataV3>::of(), expected);
    EXPECT_EQ(ProtectedSlot::get(), 9);
    EXPECT_EQ(slotOf(&Qx::IHTTPClient::queueRequest), 0);
    EXPECT_EQ(slotOf(&Qx::IHTTPClient::whenAllRequests), 1);
}

} // namespace
