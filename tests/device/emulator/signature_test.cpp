#include "device/emulator/signature.h"

#include <gtest/gtest.h>

namespace velmoranth::emulator::signature_test {
namespace {

using Arguments = std::vector<SmallArgument>;

TEST(Signature, TellsSmallResults) {
    EXPECT_EQ(signatureOf("C16@0:8").result, SmallType::boolean);
    EXPECT_EQ(signatureOf("B16@0:8").result, SmallType::boolean);
    EXPECT_EQ(signatureOf("c16@0:8").result, SmallType::signedChar);
    EXPECT_EQ(signatureOf("Vs@:").result, SmallType::signedShort);
    EXPECT_EQ(signatureOf("S@:").result, SmallType::unsignedShort);
    EXPECT_EQ(signatureOf("@16@0:8").result, SmallType::none);
    EXPECT_EQ(signatureOf("v@:C").result, SmallType::none);
    EXPECT_EQ(signatureOf("").result, SmallType::none);
}

TEST(Signature, CountsRegistersOfArguments) {
    EXPECT_EQ(signatureOf("v20@0:8B16").smallArguments, (Arguments{{2, SmallType::boolean}}));
    // Floating numbers and rectangles have registers of their own.
    EXPECT_EQ(signatureOf("v@:d{CGRect={CGPoint=dd}{CGSize=dd}}C").smallArguments,
              (Arguments{{2, SmallType::boolean}}));
    EXPECT_EQ(signatureOf("v@:{_NSRange=QQ}c").smallArguments,
              (Arguments{{4, SmallType::signedChar}}));
    EXPECT_EQ(signatureOf("v@:{Edges=ddddd}c").smallArguments,
              (Arguments{{3, SmallType::signedChar}}));
    EXPECT_EQ(signatureOf("v@:^{CGImage=}r*@?@\"NSString\"s").smallArguments,
              (Arguments{{6, SmallType::signedShort}}));
}

TEST(Signature, SeesSmallArgumentsOnTheStack) {
    EXPECT_FALSE(signatureOf("v@:@@@@@C").isSmallArgumentOnStack);
    EXPECT_TRUE(signatureOf("v@:@@@@@@C").isSmallArgumentOnStack);
    EXPECT_FALSE(signatureOf("v@:@@@@@@@").isSmallArgumentOnStack);
}

TEST(Signature, EndsWithAnUnfinishedEncoding) {
    EXPECT_TRUE(signatureOf("v@:{CGRect={").smallArguments.empty());
    EXPECT_TRUE(signatureOf("v@:@\"NS").smallArguments.empty());
}

}  // namespace
}  // namespace velmoranth::emulator::signature_test
