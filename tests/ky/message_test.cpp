// SPDX-License-Identifier: Apache-2.0
#include "wire/message.h"

#include <gtest/gtest.h>

using namespace Ky;

namespace {

Message thereAndBack(const Message& message) {
  const Parts parts = encode(message, {});
  return decode(parts.text.data(), parts.text.size(), parts.attachments, {});
}

TEST(Message, ComesBackAsItWent) {
  const Message messages[] = {
      helloMessage("id", "name", {"A", "B"}),
      welcomeMessage("robot", true),
      callMessage(7, "Module", "method", {1, "two"}, std::chrono::milliseconds(3000)),
      resultMessage(7, KyValue::array({1})),
      errorMessage(7, KyError("Module", "method", "text")),
      pingMessage(1),
      pongMessage(1),
      byeMessage("why"),
      offersMessage(KyValue::array({"A.more"})),
      pieceMessage(15, {7, 8}),
      receivedMessage(1000),
      itemMessage(3, 1, "value"),
      endMessage(3, "why"),
      closeMessage(3),
  };
  int kind = 0;
  for (const Message& message : messages) {
    const Message back = thereAndBack(message);
    EXPECT_EQ(static_cast<int>(back.kind), ++kind);
    EXPECT_EQ(back.fields, message.fields);
  }
}

TEST(Message, CarriesAnErrorWhole) {
  const KyError error =
      errorOf(thereAndBack(errorMessage(1, KyError("Module", "method", "no paper"))));
  EXPECT_EQ(error.toString(), "Module.method: no paper");
}

}  // namespace
