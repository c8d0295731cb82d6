#include "state/token_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/simulated/simulated_desktop.h"

namespace quillo {
namespace {

using simulated::MemoryKeychain;
using testing::ElementsAre;

TEST(TokenStoreTest, KeepsOneItemAnAccountAndLogsRefusalsWithoutTheSecret) {
  simulated::SimulatedDesktop desktop;
  MacKeychainTokenStore store{desktop.keychain(), desktop.log()};
  auto& keychain = desktop.keychain();
  EXPECT_TRUE(store.save("one", "old"));
  EXPECT_TRUE(store.save("kept", "old"));
  EXPECT_EQ(keychain.itemCount(), 1u);
  EXPECT_TRUE(store.save("", "empty"));
  EXPECT_EQ(keychain.itemCount(), 1u);
  keychain.setItem("com.murmex.mac.auth", "broken", "\xff\xfe");
  EXPECT_FALSE(store.read("broken"));

  keychain.refuse(MemoryKeychain::interactionNotAllowed);
  EXPECT_FALSE(store.read("old"));
  EXPECT_FALSE(store.save("secret", "old"));
  store.remove("old");
  keychain.allow();
  keychain.refuse(MemoryKeychain::Operation::add, MemoryKeychain::authorisationFailed);
  EXPECT_FALSE(store.save("secret", "new"));
  EXPECT_EQ(store.read("old"), "kept");
  EXPECT_THAT(desktop.log().lines(),
              ElementsAre("[keychain] update failed account=old status=-25308",
                          "[keychain] delete failed account=old status=-25308",
                          "[keychain] add failed account=new status=-25293"));
}

}  // namespace
}  // namespace quillo
