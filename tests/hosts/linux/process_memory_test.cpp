// Code and constants are given back, and the program goes on.
#include "hosts/linux/posix/process_memory.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <fstream>
#include <string>

namespace quillo::linux_host {
namespace {

long residentKilobytesOfFiles() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with("RssFile:")) return std::stol(line.substr(line.find(':') + 1));
  return 0;
}

TEST(ProcessMemory, IsGivenBackAndReadInAgain) {
  const auto draw = [] {
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter(&image).drawEllipse(8, 8, 48, 48);
    return image;
  };
  const QImage drawn = draw();
  const long before = residentKilobytesOfFiles();
  releaseLoadedPages();
  const long after = residentKilobytesOfFiles();
  EXPECT_LT(after, before * 9 / 10);
  EXPECT_EQ(draw(), drawn);
}

}  // namespace
}  // namespace quillo::linux_host
