#include "Platform/Linux/Protocol/RequestStream.h"

#include <gtest/gtest.h>

#include "Tests/Lens/ProtocolBytes.h"

namespace platform::linux::lens {
namespace {

using Stop = protocol::RequestStream::Stop;

constexpr std::uint32_t root = 0x50a;
constexpr std::uint32_t overlay = 0x60b;
constexpr std::uint32_t other = 0x200001;
constexpr std::uint32_t shared = 0x400002;  // the pixmap that stands for the screen
constexpr std::uint8_t composite = 140;
constexpr std::uint8_t bigRequests = 133;
constexpr std::uint8_t sharedMemory = 130;
constexpr std::uint8_t render = 138;
constexpr std::uint8_t directRendering = 149;
constexpr std::uint8_t damage = 143;

class RequestStreams : public testing::TestWithParam<protocol::ByteOrder> {
 protected:
  // Passes on everything written, in one piece, and answers stops with the shared picture. Returns their number.
  int passOn() {
    int stops = 0;
    std::size_t done = 0;
    for (;;) {
      const auto step = stream_.advance(sent_.span().subspan(done));
      done += step.length;
      if (step.stop != Stop::screenRead) break;
      ++stops;
      stream_.provide(shared);
    }
    EXPECT_EQ(done, sent_.bytes().size());
    return stops;
  }

  protocol::ScreenNames names_{.extensions = {bigRequests, composite, render, sharedMemory, directRendering, damage},
                               .root = root,
                               .rootVisual = 0x21,
                               .overlay = overlay,
                               .rootPicture = 0x400010,
                               .rootPictureOverWindows = 0x400011};
  protocol::PendingReplies replies_;
  protocol::RequestStream stream_{GetParam(), names_, replies_};
  ProtocolBytes sent_{GetParam()};
};

TEST_P(RequestStreams, RequestsThatDoNotReadTheScreenPassUnchanged) {
  sent_.request(1, 24, {other, root, 0, 0, 0, 0, 0});  // CreateWindow below the root window
  sent_.request(73, 2, {other, 0, 0, 0});              // GetImage of something else
  sent_.request(62, 0, {other, root, 3, 0, 0, 0});     // CopyArea to the root window
  sent_.request(render, 4, {1, other, 2, 0});
  sent_.request(sharedMemory, 4, {other, 0, 0, 0, 0, 0, 0});
  sent_.request(sharedMemory, 3, {root, 0, 0, 0, 0, 0, 0, 0, 0});  // PutImage to the root window
  const auto before = sent_.bytes();
  EXPECT_EQ(passOn(), 0);
  EXPECT_EQ(sent_.bytes(), before);
  EXPECT_EQ(stream_.requestCount(), 6U);
  EXPECT_TRUE(replies_.empty());
}

TEST_P(RequestStreams, ReadsOfTheScreenReadThePictureInstead) {
  sent_.request(73, 2, {root, 0, 0, 0});
  sent_.request(62, 0, {root, other, 3, 0, 0, 0});
  sent_.request(63, 0, {overlay, other, 3, 0, 0, 0, 1});
  sent_.request(sharedMemory, 4, {root, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(passOn(), 4);
  EXPECT_EQ(sent_.word(4), shared);
  EXPECT_EQ(sent_.word(20 + 4), shared);
  EXPECT_EQ(sent_.word(20 + 8), other);
  EXPECT_EQ(sent_.word(48 + 4), shared);
  EXPECT_EQ(sent_.word(80 + 4), shared);
  ASSERT_EQ(replies_.size(), 2U);
  EXPECT_EQ(replies_[0].request, 1U);
  EXPECT_EQ(replies_[1].request, 4U);
}

TEST_P(RequestStreams, DamageOfTheScreenIsFollowedOnABoard) {
  sent_.request(damage, 1, {0x700, other, 3});
  sent_.request(damage, 1, {0x701, root, 3});
  sent_.request(127, 0, {});
  sent_.request(damage, 2, {0x701});
  std::size_t done = 0;
  const auto advance = [&] {
    const auto step = stream_.advance(sent_.span().subspan(done));
    done += step.length;
    return step.stop;
  };
  EXPECT_EQ(advance(), Stop::screenRead) << "there is no board before there is a picture";
  EXPECT_EQ(done, 16U);
  EXPECT_FALSE(stream_.followsDamage());
  names_.boards.pixmaps = {0x400020, 0x400021};
  stream_.provide(shared);
  EXPECT_EQ(advance(), Stop::damageMade);
  EXPECT_EQ(done, 32U);
  EXPECT_EQ(stream_.requestCount(), 2U);
  EXPECT_EQ(sent_.word(8), other);
  EXPECT_EQ(sent_.word(16 + 4), 0x701U);
  EXPECT_EQ(sent_.word(16 + 8), 0x400021U) << "the last one is as large as the screen";
  EXPECT_TRUE(stream_.followsDamage());
  EXPECT_EQ(advance(), Stop::needsMore);
  EXPECT_EQ(done, sent_.bytes().size());
  EXPECT_FALSE(stream_.followsDamage());
}

TEST_P(RequestStreams, ALongRequestHasItsFieldsOneWordLater) {
  sent_.request(bigRequests, 0, {});
  sent_.longRequest(73, 2, {root, 0, 0, 0});
  sent_.longRequest(72, 2, {root, 3, 0, 0}, 100'000);  // PutImage
  sent_.longRequest(render, 4, {1, root, 2, 0});
  EXPECT_EQ(passOn(), 2);
  EXPECT_EQ(sent_.word(4 + 8), shared);
  EXPECT_EQ(sent_.word(sent_.bytes().size() - 12), shared);
  EXPECT_EQ(stream_.requestCount(), 4U);
}

TEST_P(RequestStreams, WithoutTheExtensionAZeroLengthIsOneWord) {
  sent_.longRequest(127, 0, {});
  EXPECT_EQ(passOn(), 0);
  // The second word counts as a request, and its length, 0 or more than there is, leads on from there.
  EXPECT_GE(stream_.requestCount(), 1U);
  EXPECT_FALSE(stream_.advance({}).stop == Stop::malformed);
}

TEST_P(RequestStreams, ALongRequestShorterThanItsHeaderIsMalformedForGood) {
  sent_.request(bigRequests, 0, {});
  sent_.request(127, 0, {});
  ProtocolBytes bad(GetParam());
  bad.longRequest(127, 0, {});
  std::vector<std::byte> bytes = bad.bytes();
  protocol::Wire(GetParam()).put32(&bytes[4], 1);
  EXPECT_EQ(passOn(), 0);
  EXPECT_EQ(stream_.advance(bytes).stop, Stop::malformed);
  EXPECT_EQ(stream_.advance(sent_.span()).stop, Stop::malformed);
}

TEST_P(RequestStreams, GrabsOfTheServerDoNothing) {
  sent_.request(36, 0, {});
  sent_.request(37, 0, {});
  EXPECT_EQ(passOn(), 0);
  EXPECT_EQ(sent_.bytes()[0], std::byte{127});
  EXPECT_EQ(sent_.bytes()[4], std::byte{127});
  EXPECT_EQ(stream_.requestCount(), 2U);
}

TEST_P(RequestStreams, APictureOfTheScreenIsFreshWheneverItIsASource) {
  sent_.request(render, 4, {7, root, 2, 0});           // CreatePicture
  sent_.request(render, 8, {3, 7, 0, 9, 0, 0, 0, 0});  // Composite from it
  sent_.request(render, 8, {3, 9, 7, 9, 0, 0, 0, 0});  // as a mask
  sent_.request(render, 10, {3, 7, 9, 0, 0});          // Trapezoids
  sent_.request(render, 23, {3, 7, 9, 0, 0, 0});       // CompositeGlyphs8
  sent_.request(render, 8, {3, 9, 0, 8, 0, 0, 0, 0});  // of other pictures
  EXPECT_EQ(passOn(), 5);
  EXPECT_EQ(sent_.word(8), shared);
}

TEST_P(RequestStreams, APictureThatWasFreedIsNoPictureOfTheScreen) {
  sent_.request(render, 4, {7, root, 2, 0});
  sent_.request(render, 7, {7});
  sent_.request(render, 8, {3, 7, 0, 9, 0, 0, 0, 0});
  EXPECT_EQ(passOn(), 1);
}

TEST_P(RequestStreams, WhoDrawsToAPictureOfTheScreenDrawsToTheScreen) {
  constexpr std::uint32_t repeat = 1, subwindowMode = 1U << 8U;
  sent_.request(render, 4, {7, root, 2, 0});                    // 20 bytes
  sent_.request(render, 26, {3, 7, 0, 0, 0, 0});                // FillRectangles, 28 bytes
  sent_.request(render, 5, {7, repeat | subwindowMode, 0, 1});  // ChangePicture, 20 bytes
  sent_.request(render, 8, {3, 9, 0, 7, 0, 0, 0, 0});           // Composite to it
  EXPECT_EQ(passOn(), 1);
  EXPECT_EQ(sent_.word(20 + 8), names_.rootPicture);
  EXPECT_EQ(sent_.word(68 + 16), names_.rootPictureOverWindows);
}

TEST_P(RequestStreams, TheOverlayWindowIsLookedForInTheReply) {
  sent_.request(composite, 7, {root});
  sent_.request(composite, 7, {other});
  EXPECT_EQ(passOn(), 0);
  ASSERT_EQ(replies_.size(), 1U);
  EXPECT_EQ(replies_[0].kind, protocol::ReplyTo::overlayWindow);
  EXPECT_EQ(replies_[0].request, 1U);
}

TEST_P(RequestStreams, RequestsWhoseReplyBringsDescriptorsAreNoticed) {
  for (const auto& [major, minor] : {std::pair{directRendering, 1}, {sharedMemory, 7}}) {
    protocol::PendingReplies replies;
    protocol::RequestStream stream(GetParam(), names_, replies);
    ProtocolBytes sent(GetParam());
    sent.request(sharedMemory, 0, {});
    sent.request(sharedMemory, 4, {other, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(stream.advance(sent.span()).length, sent.bytes().size());
    EXPECT_FALSE(stream.asksForDescriptors());
    ProtocolBytes asking(GetParam());
    asking.request(major, static_cast<std::uint8_t>(minor), {1, 2});
    EXPECT_EQ(stream.advance(asking.span()).length, asking.bytes().size());
    EXPECT_TRUE(stream.asksForDescriptors());
  }
}

TEST_P(RequestStreams, ARequestTooShortToNameTheScreenPasses) {
  sent_.request(73, 2, {});
  sent_.request(62, 0, {});
  sent_.request(render, 4, {7, root});
  sent_.request(render, 8, {3});
  sent_.request(sharedMemory, 4, {});
  sent_.request(composite, 7, {});
  const auto before = sent_.bytes();
  EXPECT_EQ(passOn(), 0);
  EXPECT_EQ(sent_.bytes(), before);
}

// Wherever the stream is cut, the same bytes come out.
TEST_P(RequestStreams, PiecesMakeNoDifference) {
  sent_.request(bigRequests, 0, {});
  sent_.request(73, 2, {root, 0, 0, 0});
  sent_.longRequest(72, 2, {root, 3, 0, 0}, 50);
  sent_.request(36, 0, {});
  sent_.request(render, 4, {7, root, 2, 1U << 8U, 1});
  sent_.request(render, 26, {3, 7, 0, 0, 0, 0});
  sent_.longRequest(render, 8, {3, 7, 0, 9, 0, 0, 0, 0});
  const auto original = sent_.bytes();
  passOn();
  for (std::size_t piece = 1; piece <= 40; ++piece) {
    protocol::PendingReplies replies;
    protocol::RequestStream stream(GetParam(), names_, replies);
    std::vector<std::byte> bytes = original;
    std::size_t done = 0;
    for (std::size_t end = piece; done < bytes.size(); end = std::min(end + piece, bytes.size())) {
      const auto step = stream.advance(protocol::Bytes(bytes).subspan(done, end - done));
      done += step.length;
      if (step.stop == Stop::screenRead) stream.provide(shared);
    }
    EXPECT_EQ(bytes, sent_.bytes()) << piece;
    EXPECT_EQ(stream.requestCount(), stream_.requestCount());
  }
}

INSTANTIATE_TEST_SUITE_P(BothByteOrders, RequestStreams,
                         testing::Values(protocol::ByteOrder::little, protocol::ByteOrder::big), [](const auto& order) {
                           return order.param == protocol::ByteOrder::little ? "Little" : "Big";
                         });

}  // namespace
}  // namespace platform::linux::lens
