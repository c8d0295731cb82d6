// quillo-speaker FIFO: speaks into a virtual microphone, in real time.
//
// It writes silence to the FIFO until it reads a line of standard input: the path of a file of raw
// sound (48 kHz, mono, signed 16-bit little endian). It plays the file, writes "played PATH" to
// standard output, and is silent again. It ends with its standard input.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t bytesPerTurn = 48'000 / 50 * 2;  // 20 ms
constexpr auto turn = std::chrono::milliseconds(20);

bool lineIsWaiting() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return std::cin.rdbuf()->in_avail() > 0 || poll(&input, 1, 0) > 0;
}

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    std::cerr << "usage: quillo-speaker FIFO < paths of raw sound files\n";
    return 2;
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::FILE* fifo = std::fopen(arguments[1], "wb");
  if (!fifo) {
    std::cerr << "quillo-speaker: cannot write to " << arguments[1] << "\n";
    return 1;
  }

  // What waits in the FIFO is heard late; the smallest one holds 43 ms.
  fcntl(fileno(fifo), F_SETPIPE_SZ, 4096);

  std::string path, sound;
  std::size_t played = 0;
  auto due = std::chrono::steady_clock::now();
  while (true) {
    if (path.empty() && lineIsWaiting()) {
      if (!std::getline(std::cin, path)) break;
      sound = contentsOf(path);
      played = 0;
    }
    std::array<char, bytesPerTurn> samples{};
    const std::size_t count = std::min(samples.size(), sound.size() - played);
    std::copy_n(sound.data() + played, static_cast<std::ptrdiff_t>(count), samples.data());
    played += count;
    if (std::fwrite(samples.data(), 1, samples.size(), fifo) != samples.size() ||
        std::fflush(fifo) != 0)
      break;  // the microphone was unplugged
    if (!path.empty() && played == sound.size()) {
      std::cout << "played " << path << std::endl;
      path.clear();
    }
    std::this_thread::sleep_until(due += turn);
  }
  std::fclose(fifo);
  return 0;
}
