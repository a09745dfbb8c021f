// The main function of the test programs for Windows: the start of the C runtime has put the FPU
// back to its own state after the DLL set it.

#include <gtest/gtest.h>

#include "zorvikrt/zorvikrt.h"

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  zorvikrt_set_thread_state();
  return RUN_ALL_TESTS();
}
