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
  EXPECT_EQ(keychain().read(service, "mac.accessToken"), KeychainError::itemNotFound);
  EXPECT_EQ(keychain().update(service, "mac.accessToken", "a"), KeychainError::itemNotFound);
  EXPECT_EQ(keychain().remove(service, "mac.accessToken"), KeychainError::itemNotFound);

  EXPECT_TRUE(keychain().add(service, "mac.accessToken", "first"));
  EXPECT_EQ(keychain().read(service, "mac.accessToken"), "first");
  EXPECT_TRUE(keychain().update(service, "mac.accessToken", "second"));
  EXPECT_EQ(keychain().read(service, "mac.accessToken"), "second");

  EXPECT_TRUE(keychain().remove(service, "mac.accessToken"));
  EXPECT_EQ(keychain().read(service, "mac.accessToken"), KeychainError::itemNotFound);
  EXPECT_EQ(keychain().remove(service, "mac.accessToken"), KeychainError::itemNotFound);
}

TEST_P(KeychainContract, ItemsAreToldApartAndComeBackByteForByte) {
  Bytes everyByte;
  for (int i = 0; i < 256; ++i) everyByte += static_cast<char>(i);
  const Bytes large = std::string(4000, 'x') + "ü";
  ASSERT_TRUE(keychain().add(service, "mac.accessToken", everyByte));
  ASSERT_TRUE(keychain().add(service, "mac.refreshToken", large));
  ASSERT_TRUE(keychain().add("another program", "mac.accessToken", "theirs"));
  const auto again = keychain().add(service, "mac.accessToken", "second");
  EXPECT_FALSE(again);
  EXPECT_NE(again, KeychainError::itemNotFound);
  EXPECT_EQ(keychain().read(service, "mac.refreshToken"), large);
  ASSERT_TRUE(keychain().remove(service, "mac.refreshToken"));
  EXPECT_EQ(keychain().read(service, "mac.accessToken"), everyByte);
  EXPECT_EQ(keychain().read(service, "mac.refreshToken"), KeychainError::itemNotFound);
  EXPECT_EQ(keychain().read("another program", "mac.accessToken"), "theirs");
}

TEST_P(KeychainContract, ARefusalIsNotTakenForAMissingItem) {
  ASSERT_TRUE(keychain().add(service, "mac.accessToken", "a"));
  if (!host().refuseEverything()) GTEST_SKIP() << "this keychain cannot be made to refuse";
  const auto read = keychain().read(service, "mac.accessToken");
  EXPECT_FALSE(read);
  EXPECT_NE(read, KeychainError::itemNotFound);
  for (const auto& changed :
       {keychain().update(service, "mac.accessToken", "b"), keychain().add(service, "new", "c"),
        keychain().remove(service, "mac.accessToken")}) {
    EXPECT_FALSE(changed);
    EXPECT_NE(changed, KeychainError::itemNotFound);
  }
}

}  // namespace quillo::contracts
