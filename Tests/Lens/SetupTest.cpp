#include "Platform/Linux/Protocol/Setup.h"

#include <gtest/gtest.h>

#include <string>

namespace platform::linux::lens {
namespace {

const protocol::Credential cookie{"MIT-MAGIC-COOKIE-1", "0123456789abcdef"};

TEST(Setup, ARequestIsReadAsItWasWritten) {
  for (const protocol::ByteOrder order : {protocol::ByteOrder::little, protocol::ByteOrder::big}) {
    const auto bytes = protocol::setupRequest({.order = order, .minorVersion = 3}, cookie);
    const auto request = protocol::parseSetupRequest(bytes);
    ASSERT_TRUE(request && *request);
    EXPECT_EQ((*request)->order, order);
    EXPECT_EQ((*request)->majorVersion, 11);
    EXPECT_EQ((*request)->minorVersion, 3);
    EXPECT_EQ((*request)->credential.name, cookie.name);
    EXPECT_EQ((*request)->credential.data, cookie.data);
    EXPECT_EQ((*request)->length, bytes.size());
  }
}

TEST(Setup, APartOfARequestSaysNothingYet) {
  const auto bytes = protocol::setupRequest({}, cookie);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const auto request = protocol::parseSetupRequest(std::span(bytes).first(length));
    ASSERT_TRUE(request) << length;
    EXPECT_FALSE(*request) << length;
  }
}

TEST(Setup, AnythingElseIsRefusedAtItsFirstByte) {
  const std::vector<std::byte> bytes{std::byte{'G'}};
  EXPECT_EQ(protocol::parseSetupRequest(bytes).error().localizedDescription, "What it sends is not X protocol.");
}

TEST(Setup, ARefusalIsOneAServerCouldHaveGiven) {
  const auto bytes = protocol::setupRefusal(protocol::ByteOrder::big, "Go away.");
  EXPECT_EQ(protocol::setupReplyLength(protocol::ByteOrder::big, bytes).value(), bytes.size());
  EXPECT_EQ(std::to_integer<int>(bytes[0]), 0);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.data()) + 8, std::to_integer<std::size_t>(bytes[1])),
            "Go away.");
}

TEST(Setup, AnInvalidReplyIsAnErrorAndAnIncompleteOneIsNot) {
  EXPECT_FALSE(protocol::setupReplyLength(protocol::ByteOrder::little, std::vector{std::byte{9}}));
  EXPECT_FALSE(protocol::setupReplyLength(protocol::ByteOrder::little, std::vector{std::byte{1}}).value().has_value());
}

TEST(Setup, SecretsAreTheSameOnlyWhenEveryByteIs) {
  EXPECT_TRUE(protocol::isSameSecret("abc", "abc"));
  EXPECT_FALSE(protocol::isSameSecret("abc", "abd"));
  EXPECT_FALSE(protocol::isSameSecret("abc", "ab"));
  EXPECT_FALSE(protocol::isSameSecret("", "a"));
}

}  // namespace
}  // namespace platform::linux::lens
