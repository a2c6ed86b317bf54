#include "platform/cups_queues.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace tavrel {
namespace {

// What the library that stands in for the one of CUPS lets a test look at.
int& Lever(const char* name) {
  static void* const library = dlopen("libcups.so.2", RTLD_NOW | RTLD_LOCAL);
  return *reinterpret_cast<int* (*)()>(dlsym(library, name))();
}

TEST(CupsQueues, TellWhatAQueueSaysOfItself) {
  const auto laser = CupsQueues().Find("Laser");
  ASSERT_TRUE(laser);
  EXPECT_TRUE(laser->IsThere);
  EXPECT_EQ(laser->State, "3");
  EXPECT_EQ(laser->Accepts, "true");
}

TEST(CupsQueues, TellASetOfOptionsApartFromItsQueue) {
  const auto draft = CupsQueues().Find("Laser/draft");
  ASSERT_TRUE(draft);
  EXPECT_TRUE(draft->IsThere);
  EXPECT_EQ(draft->State, "4");
  EXPECT_EQ(draft->Accepts, "false");
}

TEST(CupsQueues, TellNothingForWhatAQueueDoesNotSay) {
  const auto stopped = CupsQueues().Find("Stopped");
  ASSERT_TRUE(stopped);
  EXPECT_EQ(stopped->State, "5");
  EXPECT_EQ(stopped->Accepts, "");
}

TEST(CupsQueues, ThatAreNotThereAreNotMissingAServer) {
  for (const char* name : {"Ink", "", "Stopped/draft", "/draft"}) {
    const auto queue = CupsQueues().Find(name);
    ASSERT_TRUE(queue) << name;
    EXPECT_FALSE(queue->IsThere) << name;
  }
}

TEST(CupsQueues, GiveBackWhatTheyWereHanded) {
  for (const char* name : {"Laser", "Laser/draft", "Stopped", "Ink"}) {
    static_cast<void>(CupsQueues().Find(name));
    EXPECT_EQ(Lever("StandInHeld"), 0) << name;
  }
}

// States from 0x400 on are errors of the request, from 0x500 on of the server.
TEST(CupsQueues, TookThePageInEveryStateOfSuccess) {
  for (const auto& [state, has_taken] :
       {std::pair{0, true}, {1, true}, {7, true}, {8, false}, {0x400, false}, {0x507, false}}) {
    Lever("StandInState") = state;
    EXPECT_EQ(CupsQueues().HasTakenLast(), has_taken) << state;
  }
}

}  // namespace
}  // namespace tavrel
