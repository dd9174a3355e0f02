#include "platform/base64.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>

namespace veltrix {
namespace {

std::vector<std::byte> bytes(std::string_view text) {
  std::vector<std::byte> out;
  for (const char c : text) {
    out.push_back(static_cast<std::byte>(c));
  }
  return out;
}

TEST(Base64, EncodesWithPadding) {
  EXPECT_EQ(base64Encoded({}), "");
  EXPECT_EQ(base64Encoded(bytes("f")), "Zg==");
  EXPECT_EQ(base64Encoded(bytes("fo")), "Zm8=");
  EXPECT_EQ(base64Encoded(bytes("foo")), "Zm9v");
  EXPECT_EQ(base64Encoded(bytes("foob")), "Zm9vYg==");
  EXPECT_EQ(base64Encoded(bytes("\xFB\xFF")), "+/8=");
}

TEST(Base64, DecodesAcrossBlanksAndLineEnds) {
  EXPECT_EQ(base64Decoded(" Zm\n\t9v\r\nYg = =\n"), bytes("foob"));
  EXPECT_EQ(base64Decoded(" \n"), bytes(""));
  EXPECT_EQ(base64Decoded(""), bytes(""));
}

TEST(Base64, RefusesForeignCharactersAndBadPadding) {
  for (const char* bad : {"Zm9", "Z", "Zg", "Zg=", "Zg===", "=", "====", "Zm9v=", "Zm9v====", "Zg==Zg==",
                          "Zg==x", "Zm-v", "Zm9v!", "Zm9v\xC3\xA9", "Z=g="}) {
    EXPECT_FALSE(base64Decoded(bad).has_value()) << bad;
  }
}

RC_GTEST_PROP(Base64, DecodesWhatItEncodes, (const std::vector<unsigned char>& raw)) {
  std::vector<std::byte> data;
  data.reserve(raw.size());
  for (const unsigned char byte : raw) {
    data.push_back(static_cast<std::byte>(byte));
  }
  RC_ASSERT(base64Decoded(base64Encoded(data)) == data);
}

}  // namespace
}  // namespace veltrix
