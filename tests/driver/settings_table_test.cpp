#include "driver/settings_table.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

DeviceAddress addressOf(std::size_t product) {
  return {0xA1D0, static_cast<std::uint16_t>(product), 1, 0};
}

TrackballSettings settingsOf(std::uint8_t speed) {
  TrackballSettings settings{};
  settings.record.speed = speed;
  return settings;
}

TEST(SettingsTable, KeepsTheLastOfEachAddress) {
  SettingsTable table;
  EXPECT_EQ(table.find(addressOf(1)), nullptr);
  EXPECT_FALSE(table.put(addressOf(1), settingsOf(10)));
  EXPECT_FALSE(table.put(addressOf(2), settingsOf(20)));
  EXPECT_FALSE(table.put(addressOf(1), settingsOf(30)));
  EXPECT_EQ(table.find(addressOf(1))->record.speed, 30);
  EXPECT_EQ(table.find(addressOf(2))->record.speed, 20);
  table.remove(addressOf(1));
  EXPECT_EQ(table.find(addressOf(1)), nullptr);
  EXPECT_NE(table.find(addressOf(2)), nullptr);
  table.clear();
  EXPECT_EQ(table.find(addressOf(2)), nullptr);
}

TEST(SettingsTable, TellsVersionsOfAProductApart) {
  SettingsTable table;
  table.put({0xA1D0, 5, 1, 0}, settingsOf(10));
  EXPECT_EQ(table.find({0xA1D0, 5, 2, 0}), nullptr);
  EXPECT_EQ(table.find({0xA1D1, 5, 1, 0}), nullptr);
}

TEST(SettingsTable, TheOldestMakesRoom) {
  SettingsTable table;
  for (std::size_t i = 0; i < SettingsTable::kMost; ++i) EXPECT_FALSE(table.put(addressOf(i), settingsOf(1)));
  table.put(addressOf(0), settingsOf(2));  // is the newest now
  EXPECT_EQ(table.put(addressOf(500), settingsOf(3)), addressOf(1));
  EXPECT_EQ(table.find(addressOf(1)), nullptr);
  EXPECT_EQ(table.find(addressOf(0))->record.speed, 2);
  EXPECT_EQ(table.find(addressOf(500))->record.speed, 3);
}

TEST(TrackballSettings, AreAlikeInEveryByte) {
  TrackballSettings changed = settingsOf(1);
  EXPECT_EQ(changed, settingsOf(1));
  changed.record.action[15].argument = 1;
  EXPECT_FALSE(changed == settingsOf(1));
  changed = settingsOf(1);
  changed.scroll.countStop = 1;
  EXPECT_FALSE(changed == settingsOf(1));
}

}  // namespace
}  // namespace veltrix
