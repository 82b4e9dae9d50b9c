#include "deps/scan_style.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(ScanStyleTest, ChosenByExtensionLists) {
  EXPECT_EQ(ChooseScanStyle("a.c", "C;CPP", "ASM"), ScanStyle::kC);
  EXPECT_EQ(ChooseScanStyle("dir.x/a.Cpp", "C; CPP", "ASM"), ScanStyle::kC);
  EXPECT_EQ(ChooseScanStyle("a.v", "C;V", "ASM"), ScanStyle::kVerilog);
  EXPECT_EQ(ChooseScanStyle("a.v", "C", "V"), ScanStyle::kKeyword);  // "V" only counts for C
  EXPECT_EQ(ChooseScanStyle("a.asm", "C;ASM", "ASM"), ScanStyle::kC);
  EXPECT_EQ(ChooseScanStyle("start.S", "C", "asm;s"), ScanStyle::kKeyword);
  EXPECT_EQ(ChooseScanStyle("a.h", "C;CPP", "ASM"), ScanStyle::kNone);
  EXPECT_EQ(ChooseScanStyle("Makefile", "C;;", ";ASM"), ScanStyle::kNone);
}

}  // namespace
}  // namespace quillon
