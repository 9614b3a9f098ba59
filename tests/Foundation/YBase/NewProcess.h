#pragma once

#include <cstdlib>

#include <gtest/gtest.h>

/// Runs the rest of a test in a process of its own, where no stack was taken before, however its program is
/// run. What it expects there is expected of the test.
template <class Work>
void RunInNewProcess(Work work) {
  // This runs the program anew, up to here; a fork would take along what the process has read.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        work();
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}
