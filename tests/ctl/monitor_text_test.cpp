#include "ctl/monitor_text.h"

#include <gtest/gtest.h>

namespace veltrix::ctl {
namespace {

ButtonUse use(std::uint16_t slot, bool pressed, bool byHelper) {
  return {.number = 4,
          .device = {.vendor = 0xA1D0, .product = 0x2041, .version = 0x0107},
          .slot = slot,
          .command = 10,
          .pressed = pressed,
          .byHelper = byHelper};
}

TEST(MonitorText, NamesButtonsChordsAndTheWheel) {
  EXPECT_EQ(slotText(0), "button 0");
  EXPECT_EQ(slotText(3), "button 3");
  EXPECT_EQ(slotText(8), "chord 8");
  EXPECT_EQ(slotText(9), "chord 9");
  EXPECT_EQ(slotText(10), "button 10");
  EXPECT_EQ(slotText(12), "wheel");
}

TEST(MonitorText, IsALineForEachUse) {
  EXPECT_EQ(monitorLine(use(3, true, false), "Keystroke"),
            "A1D0:2041:0107 #4  button 3   pressed   Keystroke\n");
  EXPECT_EQ(monitorLine(use(12, false, true), "Launch"),
            "A1D0:2041:0107 #4  wheel      released  Launch (by the helper)\n");
}

TEST(MonitorText, IsAnObjectOnALineAsJson) {
  const std::string line = monitorJsonLine(use(8, true, true), "Keystroke");
  EXPECT_EQ(line.find('\n'), line.size() - 1);
  EXPECT_EQ(Json::parse(line), Json({{"number", 4},
                                     {"vendor", 0xA1D0},
                                     {"product", 0x2041},
                                     {"version", 0x0107},
                                     {"slot", 8},
                                     {"command", 10},
                                     {"title", "Keystroke"},
                                     {"pressed", true},
                                     {"by", "helper"}}));
}

}  // namespace
}  // namespace veltrix::ctl
