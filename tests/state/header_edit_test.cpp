#include "state/header_edit.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr const char* kName = "M260314A.OVN";

// The file of `slot` is looked at, too.
class ViewedToo {
 public:
  explicit ViewedToo(int slot) {
    directory.Write(kName, "");
    Name(slot);
    Name(kViewedFile);
  }
  void Name(int slot) {
    state.SlotFile[slot] = kName;
    state.SlotPath[slot] = directory.Path();
  }
  void Edit(int slot) {
    EditHeader(state, slot, [](UnitRecord& header) { header.UnitMarks = 3; });
  }

  TemporaryDirectory directory;
  RunState state;
};

TEST(HeaderEdit, OfAViewedFileIsMadeInItsSlotAndWrittenFromThere) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    ViewedToo fixture(slot);
    EXPECT_EQ(OwnerOfViewedFile(fixture.state), slot);
    fixture.Edit(kViewedFile);
    EXPECT_EQ(fixture.state.Unit[kViewedFile].UnitMarks, 3) << slot;
    EXPECT_EQ(fixture.state.Unit[slot].UnitMarks, 3) << slot;
    EXPECT_FALSE(fixture.state.SlotDirty[kViewedFile]) << slot;
    for (int other = 1; other <= kSlots; ++other) {
      EXPECT_EQ(fixture.state.SlotDirty[other], other == slot) << slot;
    }
  }
}

TEST(HeaderEdit, OfASlotLeavesTheViewedFileAlone) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    ViewedToo fixture(slot);
    fixture.Edit(slot);
    EXPECT_EQ(fixture.state.Unit[slot].UnitMarks, 3) << slot;
    EXPECT_EQ(fixture.state.Unit[kViewedFile].UnitMarks, 0) << slot;
    EXPECT_TRUE(fixture.state.SlotDirty[slot]) << slot;
    EXPECT_FALSE(fixture.state.SlotDirty[kViewedFile]) << slot;
  }
}

TEST(HeaderEdit, OfAFileThatNoSlotHasIsItsOwn) {
  ViewedToo fixture(kViewedFile);
  EXPECT_EQ(OwnerOfViewedFile(fixture.state), kViewedFile);
  fixture.Edit(kViewedFile);
  EXPECT_EQ(fixture.state.Unit[kViewedFile].UnitMarks, 3);
  EXPECT_TRUE(fixture.state.SlotDirty[kViewedFile]);
  fixture.state.SlotFile[kViewedFile].clear();
  EXPECT_EQ(OwnerOfViewedFile(fixture.state), kViewedFile);
}

}  // namespace
}  // namespace tavrel
