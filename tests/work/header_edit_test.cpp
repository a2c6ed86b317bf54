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
    ViewedToo room(slot);
    EXPECT_EQ(OwnerOfViewedFile(room.state), slot);
    room.Edit(kViewedFile);
    EXPECT_EQ(room.state.Unit[kViewedFile].UnitMarks, 3) << slot;
    EXPECT_EQ(room.state.Unit[slot].UnitMarks, 3) << slot;
    EXPECT_FALSE(room.state.SlotDirty[kViewedFile]) << slot;
    for (int other = 1; other <= kSlots; ++other) {
      EXPECT_EQ(room.state.SlotDirty[other], other == slot) << slot;
    }
  }
}

TEST(HeaderEdit, OfASlotLeavesTheViewedFileAlone) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    ViewedToo room(slot);
    room.Edit(slot);
    EXPECT_EQ(room.state.Unit[slot].UnitMarks, 3) << slot;
    EXPECT_EQ(room.state.Unit[kViewedFile].UnitMarks, 0) << slot;
    EXPECT_TRUE(room.state.SlotDirty[slot]) << slot;
    EXPECT_FALSE(room.state.SlotDirty[kViewedFile]) << slot;
  }
}

TEST(HeaderEdit, OfAFileThatNoSlotHasIsItsOwn) {
  ViewedToo room(kViewedFile);
  EXPECT_EQ(OwnerOfViewedFile(room.state), kViewedFile);
  room.Edit(kViewedFile);
  EXPECT_EQ(room.state.Unit[kViewedFile].UnitMarks, 3);
  EXPECT_TRUE(room.state.SlotDirty[kViewedFile]);
  room.state.SlotFile[kViewedFile].clear();
  EXPECT_EQ(OwnerOfViewedFile(room.state), kViewedFile);
}

}  // namespace
}  // namespace tavrel
