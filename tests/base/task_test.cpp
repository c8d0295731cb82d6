#include "base/task.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
namespace quillo { namespace { TEST(X,Y){} } }
