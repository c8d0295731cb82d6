#include "state/token_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/simulated/simulated_desktop.h"

namespace quillo {
namespace {

using simulated::MemoryKeychain;
using testing::ElementsAre;
using testing::IsEmpty;

class TokenStoreTest : public testing::Test {
 protected:
  simulated::SimulatedDesktop desktop_;
  MacKeychainTokenStore store_{desktop_.keychain(), desktop_.log()};
};

TEST_F(TokenStoreTest, KeepsOneItemAnAccountAndEmptyMeansNone) {
  EXPECT_FALSE(store_.read("a"));
  EXPECT_TRUE(store_.save("one", "a"));
  EXPECT_TRUE(store_.save("zwei ü", "a"));
  EXPECT_EQ(store_.read("a"), "zwei ü");
  EXPECT_EQ(desktop_.keychain().itemCount(), 1u);
  EXPECT_TRUE(store_.save("", "a"));
  EXPECT_TRUE(store_.save("", "a"));
  store_.remove("a");
  EXPECT_EQ(desktop_.keychain().itemCount(), 0u);
  EXPECT_THAT(desktop_.log().lines(), IsEmpty());
  desktop_.keychain().setItem("com.murmex.mac.auth", "a", "\xff\xfe");
  EXPECT_FALSE(store_.read("a"));
}

TEST_F(TokenStoreTest, RefusalsAreLoggedByNumberWithoutTheSecret) {
  auto& keychain = desktop_.keychain();
  store_.save("kept", "old");
  keychain.refuse(MemoryKeychain::interactionNotAllowed);
  EXPECT_FALSE(store_.read("old"));
  EXPECT_FALSE(store_.save("secret", "old"));
  store_.remove("old");
  keychain.allow();
  keychain.refuse(MemoryKeychain::Operation::add, MemoryKeychain::authorisationFailed);
  EXPECT_FALSE(store_.save("secret", "new"));
  EXPECT_EQ(store_.read("old"), "kept");
  EXPECT_THAT(desktop_.log().lines(),
              ElementsAre("[keychain] update failed account=old status=-25308",
                          "[keychain] delete failed account=old status=-25308",
                          "[keychain] add failed account=new status=-25293"));
}

}  // namespace
}  // namespace quillo
