// What every keychain keeps.
#pragma once

#include "contracts/support/contract_host.h"
#include "platform/keychain.h"

namespace quillo::contracts {

class KeychainHost : public ContractHost {
 public:
  // Empty at the beginning of a case.
  virtual Keychain& keychain() = 0;
  // Each of them is refused from now on, though the items are there. False where the host cannot be
  // made to refuse.
  virtual bool refuseEverything() = 0;
};

class KeychainContract : public PortContract<KeychainHost> {
 protected:
  static constexpr const char* service = "com.murmex.mac.auth";
  Keychain& keychain() { return host().keychain(); }
};

TEST_P(KeychainContract, AnItemIsAddedReadChangedAndRemoved) {
  EXPECT_EQ(keychain().read(service, "mac.accessToken").status, KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain().update(service, "mac.accessToken", "a"), KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain().remove(service, "mac.accessToken"), KeychainStatus::itemNotFound);

  EXPECT_EQ(keychain().add(service, "mac.accessToken", "first"), KeychainStatus::success);
  EXPECT_EQ(keychain().read(service, "mac.accessToken").data, "first");
  EXPECT_EQ(keychain().update(service, "mac.accessToken", "second"), KeychainStatus::success);
  const auto changed = keychain().read(service, "mac.accessToken");
  EXPECT_EQ(changed.status, KeychainStatus::success);
  EXPECT_EQ(changed.data, "second");

  EXPECT_EQ(keychain().remove(service, "mac.accessToken"), KeychainStatus::success);
  EXPECT_EQ(keychain().read(service, "mac.accessToken").status, KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain().remove(service, "mac.accessToken"), KeychainStatus::itemNotFound);
}

TEST_P(KeychainContract, ItemsAreToldApartAndComeBackByteForByte) {
  Bytes everyByte;
  for (int i = 0; i < 256; ++i) everyByte += static_cast<char>(i);
  const Bytes large = std::string(4000, 'x') + "ü";
  ASSERT_EQ(keychain().add(service, "mac.accessToken", everyByte), KeychainStatus::success);
  ASSERT_EQ(keychain().add(service, "mac.refreshToken", large), KeychainStatus::success);
  ASSERT_EQ(keychain().add("another program", "mac.accessToken", "theirs"),
            KeychainStatus::success);
  const KeychainStatus again = keychain().add(service, "mac.accessToken", "second");
  EXPECT_NE(again, KeychainStatus::success);
  EXPECT_NE(again, KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain().read(service, "mac.refreshToken").data, large);
  ASSERT_EQ(keychain().remove(service, "mac.refreshToken"), KeychainStatus::success);
  EXPECT_EQ(keychain().read(service, "mac.accessToken").data, everyByte);
  EXPECT_EQ(keychain().read(service, "mac.refreshToken").status, KeychainStatus::itemNotFound);
  EXPECT_EQ(keychain().read("another program", "mac.accessToken").data, "theirs");
}

TEST_P(KeychainContract, ARefusalIsNotTakenForAMissingItem) {
  ASSERT_EQ(keychain().add(service, "mac.accessToken", "a"), KeychainStatus::success);
  if (!host().refuseEverything()) GTEST_SKIP() << "this keychain cannot be made to refuse";
  for (const KeychainStatus refused :
       {keychain().read(service, "mac.accessToken").status,
        keychain().update(service, "mac.accessToken", "b"), keychain().add(service, "new", "c"),
        keychain().remove(service, "mac.accessToken")}) {
    EXPECT_NE(refused, KeychainStatus::success);
    EXPECT_NE(refused, KeychainStatus::itemNotFound);
  }
}

}  // namespace quillo::contracts
