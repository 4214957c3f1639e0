#include "Platform/Linux/Protocol/ReplyStream.h"

#include <gtest/gtest.h>

#include "Tests/Lens/ProtocolBytes.h"

namespace platform::linux::lens {
namespace {

constexpr std::uint32_t rootVisual = 0x21;

class ReplyStreams : public testing::TestWithParam<protocol::ByteOrder> {
 protected:
  // What comes out after everything was written in pieces of this size.
  ProtocolBytes passOn(std::size_t piece = 1'000'000) {
    std::vector<std::byte> bytes = sent_.bytes();
    std::size_t done = 0;
    std::size_t end = std::min(piece, bytes.size());
    while (done < bytes.size()) {
      const auto step = stream_.advance(protocol::Bytes(bytes).subspan(done, end - done));
      done += step.length;
      if (step.isBarrierNext) {
        bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(done),
                    bytes.begin() + static_cast<std::ptrdiff_t>(done + protocol::ReplyStream::messageSize));
        end -= protocol::ReplyStream::messageSize;
      } else if (step.length == 0 && end == bytes.size()) {
        ADD_FAILURE() << "The end does not come out.";
        break;
      } else {
        end = std::min(end + piece, bytes.size());
      }
    }
    ProtocolBytes result(GetParam());
    for (std::size_t i = 0; i < bytes.size() / 4; ++i) result.request(0, 0, {});
    std::ranges::copy(bytes, result.span().begin());
    return result;
  }

  protocol::ScreenNames names_{.root = 1, .rootVisual = rootVisual};
  protocol::PendingReplies replies_;
  protocol::ReplyStream stream_{GetParam(), names_, replies_};
  ProtocolBytes sent_{GetParam()};
};

TEST_P(ReplyStreams, OtherMessagesPassUnchanged) {
  sent_.message(1, 1, 5, 3);
  sent_.message(0, 2);
  sent_.message(22, 2);
  sent_.message(35, 2, 0, 10);
  sent_.message(0x80 | 33, 2);
  EXPECT_EQ(passOn().bytes(), sent_.bytes());
  EXPECT_EQ(stream_.lastRequest(), 2U);
}

TEST_P(ReplyStreams, AnImageOfTheScreenGetsTheScreensVisual) {
  replies_ = {{1, protocol::ReplyTo::screenImage}, {3, protocol::ReplyTo::screenImage}};
  sent_.message(1, 1, 0, 2);
  sent_.message(1, 2, 0, 0);
  sent_.message(22, 2);
  sent_.message(1, 3, 0, 1);
  const ProtocolBytes out = passOn();
  EXPECT_EQ(out.word(8), rootVisual);
  EXPECT_EQ(out.word(40 + 8), 0U);
  EXPECT_EQ(out.word(104 + 8), rootVisual);
}

TEST_P(ReplyStreams, DamageOfABoardIsTheScreens) {
  names_.extensions.damageEvent = 91;
  names_.boards = {.pixmaps = {0x400020}, .width = 1280, .height = 800};
  sent_.message(91, 1);
  sent_.message(0x80 | 91, 1);
  sent_.message(91, 1);
  const protocol::Wire wire(GetParam());
  for (const std::size_t offset : {0U, 32U}) wire.put32(&sent_.span()[offset + 4], 0x400020);
  wire.put32(&sent_.span()[64 + 4], 77);
  const ProtocolBytes out = passOn();
  for (const std::size_t offset : {0U, 32U}) {
    EXPECT_EQ(out.word(offset + 4), 1U);
    EXPECT_EQ(out.half(offset + 28), 1280);
    EXPECT_EQ(out.half(offset + 30), 800);
  }
  EXPECT_EQ(out.word(64 + 4), 77U);
  EXPECT_EQ(out.half(64 + 28), 0);
}

TEST_P(ReplyStreams, OwnRequestsWithoutReplyAreNotCounted) {
  replies_ = {{2, protocol::ReplyTo::nothing},
              {4, protocol::ReplyTo::screenImage},
              {5, protocol::ReplyTo::nothing},
              {8, protocol::ReplyTo::nothing}};
  sent_.message(22, 1);
  sent_.message(22, 2);
  sent_.message(22, 3);
  sent_.message(1, 4);
  sent_.message(0, 5);  // an error that is not the program's
  sent_.message(0, 7);
  sent_.message(1, 9);
  const ProtocolBytes out = passOn();
  ASSERT_EQ(out.bytes().size(), 6U * 32);
  EXPECT_EQ(out.half(2), 1);
  EXPECT_EQ(out.half(32 + 2), 1);
  EXPECT_EQ(out.half(64 + 2), 2);
  EXPECT_EQ(out.half(96 + 2), 3);
  EXPECT_EQ(out.word(96 + 8), rootVisual);
  EXPECT_EQ(out.half(128 + 2), 5);
  EXPECT_EQ(out.half(160 + 2), 6);
}

TEST_P(ReplyStreams, AnErrorInsteadOfAnImageIsLeftAlone) {
  replies_ = {{1, protocol::ReplyTo::screenImage}, {2, protocol::ReplyTo::screenImage}};
  sent_.message(0, 1, 77);
  sent_.message(1, 2, 0);
  const ProtocolBytes out = passOn();
  EXPECT_EQ(out.word(8), 77U);
  EXPECT_EQ(out.word(32 + 8), rootVisual);
}

TEST_P(ReplyStreams, TheAnswerToAQuestionOfTheLensIsLeftOutAndLaterNumbersAreTheClients) {
  replies_ = {{2, protocol::ReplyTo::barrier}, {3, protocol::ReplyTo::screenImage}, {4, protocol::ReplyTo::barrier}};
  sent_.message(22, 1);
  sent_.message(1, 2);
  sent_.message(1, 3, 0, 4);
  sent_.message(1, 4);
  sent_.message(0, 5);
  sent_.message(11, 0xabcd);  // KeymapNotify: no number
  const ProtocolBytes out = passOn();
  ASSERT_EQ(out.bytes().size(), 32U + 48U + 32U + 32U);
  EXPECT_EQ(out.half(2), 1);
  EXPECT_EQ(out.half(32 + 2), 2);
  EXPECT_EQ(out.word(32 + 8), rootVisual);
  EXPECT_EQ(out.half(80 + 2), 3);
  EXPECT_EQ(out.half(112 + 2), 0xabcd);
  EXPECT_EQ(stream_.lastRequest(), 5U);
}

TEST_P(ReplyStreams, NumbersWrapAround) {
  replies_ = {{70'000, protocol::ReplyTo::screenImage}};
  sent_.message(22, 60'000);
  sent_.message(1, static_cast<std::uint16_t>(70'000));
  const ProtocolBytes out = passOn();
  EXPECT_EQ(stream_.lastRequest(), 70'000U);
  EXPECT_EQ(out.word(32 + 8), rootVisual);
}

TEST_P(ReplyStreams, TheOverlayWindowBecomesKnown) {
  replies_ = {{1, protocol::ReplyTo::overlayWindow}};
  sent_.message(1, 1, 0x99);
  EXPECT_EQ(passOn().bytes(), sent_.bytes());
  EXPECT_TRUE(names_.isScreen(0x99));
}

TEST_P(ReplyStreams, PiecesMakeNoDifference) {
  const protocol::PendingReplies replies{
      {1, protocol::ReplyTo::screenImage}, {2, protocol::ReplyTo::barrier}, {3, protocol::ReplyTo::screenImage}};
  replies_ = replies;
  sent_.message(1, 1, 0, 7);
  sent_.message(1, 2);
  sent_.message(35, 2, 0, 3);
  sent_.message(1, 3, 0, 1);
  const auto whole = passOn().bytes();
  for (std::size_t piece = 1; piece <= 70; ++piece) {
    replies_ = replies;
    stream_.~ReplyStream();
    new (&stream_) protocol::ReplyStream(GetParam(), names_, replies_);
    EXPECT_EQ(passOn(piece).bytes(), whole) << piece;
  }
}

INSTANTIATE_TEST_SUITE_P(BothByteOrders, ReplyStreams,
                         testing::Values(protocol::ByteOrder::little, protocol::ByteOrder::big), [](const auto& order) {
                           return order.param == protocol::ByteOrder::little ? "Little" : "Big";
                         });

}  // namespace
}  // namespace platform::linux::lens
