#include "contracts/linux/linux_loopback_server.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>

namespace quillo::contracts {
namespace {

using linux_host::FileDescriptor;

FileDescriptor boundSocket() {
  FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  return socket;
}

int portOf(const FileDescriptor& socket) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

std::string rootOf(int port) {
  return "http://127.0.0.1:" + std::to_string(port);
}

bool sendAll(int socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

// Appends what comes; false at the end of the connection.
bool receiveMore(int socket, std::string& buffer) {
  char bytes[65536];
  const ssize_t count = ::recv(socket, bytes, sizeof bytes, 0);
  if (count > 0) buffer.append(bytes, static_cast<std::size_t>(count));
  return count > 0;
}

HeaderFields headersOf(std::string_view head) {
  HeaderFields headers;
  for (auto line = head.find("\r\n"); line != std::string_view::npos;) {
    const auto next = head.find("\r\n", line + 2);
    const std::string_view text = head.substr(line + 2, next - line - 2);
    if (const auto colon = text.find(": "); colon != std::string_view::npos)
      headers.emplace_back(text.substr(0, colon), text.substr(colon + 2));
    line = next;
  }
  return headers;
}

std::string headOf(const ServedReply& reply) {
  std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " Said So\r\n";
  for (const auto& [name, value] : reply.headers) head += name + ": " + value + "\r\n";
  if (reply.status != 204) head += "Content-Length: " + std::to_string(reply.body.size()) + "\r\n";
  return head + "\r\n";
}

}  // namespace

LoopbackServer::LoopbackServer() : listener_(boundSocket()), port_(portOf(listener_)) {
  ::listen(listener_.get(), SOMAXCONN);
  acceptor_ = std::jthread([this] { acceptConnections(); });
}

LoopbackServer::~LoopbackServer() {
  {
    const std::scoped_lock lock(mutex_);
    isEnding_ = true;
    for (const Connection& connection : connections_)
      ::shutdown(connection.socket.get(), SHUT_RDWR);
  }
  ending_.notify_all();
  ::shutdown(listener_.get(), SHUT_RDWR);
  acceptor_.join();
  connections_.clear();  // joins each
}

std::string LoopbackServer::address() const {
  return rootOf(port_);
}

void LoopbackServer::serve(const std::string& path, Served served) {
  const std::scoped_lock lock(mutex_);
  served_[path] = std::move(served);
}

void LoopbackServer::takeBodiesIn(Duration duration) {
  const std::scoped_lock lock(mutex_);
  bodyTime_ = duration;
}

std::vector<SeenRequest> LoopbackServer::seen() const {
  const std::scoped_lock lock(mutex_);
  return seen_;
}

void LoopbackServer::waitUntilSeen(std::size_t count) {
  std::unique_lock lock(mutex_);
  arrived_.wait_for(lock, std::chrono::seconds(20), [&] { return seen_.size() >= count; });
}

std::size_t LoopbackServer::underWay() const {
  const std::scoped_lock lock(mutex_);
  return static_cast<std::size_t>(
      std::ranges::count(connections_, false, &LoopbackServer::Connection::isIdle));
}

int LoopbackServer::connectionsOpened() const {
  const std::scoped_lock lock(mutex_);
  return static_cast<int>(connections_.size());
}

void LoopbackServer::closeIdleConnections() {
  const std::scoped_lock lock(mutex_);
  for (const Connection& connection : connections_)
    if (connection.isIdle) ::shutdown(connection.socket.get(), SHUT_RDWR);
}

void LoopbackServer::acceptConnections() {
  while (true) {
    FileDescriptor socket(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    const std::scoped_lock lock(mutex_);
    if (!socket || isEnding_) return;
    const int on = 1;
    ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    Connection& connection = connections_.emplace_back();
    connection.socket = std::move(socket);
    connection.thread = std::jthread([this, &connection] { talk(connection); });
  }
}

void LoopbackServer::talk(Connection& connection) {
  const int socket = connection.socket.get();
  std::string buffer;
  bool goesOn = true;
  while (goesOn) {
    auto request = receive(socket, buffer);
    if (!request) break;
    {
      const std::scoped_lock lock(mutex_);
      connection.isIdle = false;
      seen_.push_back(*request);
      arrived_.notify_all();
    }
    goesOn = answer(socket, *request);
    const std::scoped_lock lock(mutex_);
    connection.isIdle = true;
  }
  ::shutdown(socket, SHUT_RDWR);
}

std::optional<SeenRequest> LoopbackServer::receive(int socket, std::string& buffer) {
  std::size_t headEnd = std::string::npos;
  while ((headEnd = buffer.find("\r\n\r\n")) == std::string::npos)
    if (!receiveMore(socket, buffer)) return std::nullopt;
  const std::string head = buffer.substr(0, headEnd);
  buffer.erase(0, headEnd + 4);
  SeenRequest request;
  request.method = head.substr(0, head.find(' '));
  const auto pathBegin = request.method.size() + 1;
  request.path = head.substr(pathBegin, head.find(' ', pathBegin) - pathBegin);
  request.headers = headersOf(head);
  const auto length = std::ranges::find(request.headers, std::string("Content-Length"),
                                        &HeaderFields::value_type::first);
  const std::size_t size = length == request.headers.end() ? 0 : std::stoul(length->second);
  for (std::size_t before = 0; (before = buffer.size()) < size;) {
    if (!receiveMore(socket, buffer)) return std::nullopt;
    const double share = static_cast<double>(buffer.size() - before) / static_cast<double>(size);
    if (!pauseForBody(share)) return std::nullopt;
  }
  request.body = buffer.substr(0, size);
  buffer.erase(0, size);
  return request;
}

// Whether the connection goes on.
bool LoopbackServer::answer(int socket, const SeenRequest& request) {
  Served served = ServedReply{.status = 404};
  {
    const std::scoped_lock lock(mutex_);
    if (request.method == "OPTIONS") {
      served = ServedReply{.status = 204};
    } else if (const auto told = served_.find(request.path); told != served_.end()) {
      served = told->second;
    }
  }
  if (const auto* reply = std::get_if<ServedReply>(&served)) return send(socket, *reply);
  switch (std::get<Misbehaviour>(served)) {
    case Misbehaviour::stall: {
      std::string nothing;
      while (receiveMore(socket, nothing)) {
      }
      return false;
    }
    case Misbehaviour::drop:
      return false;
    case Misbehaviour::truncate:
      sendAll(socket, headOf({.body = "{\"text\":\"hello\"}"}) + "{\"text\"");
      return false;
    case Misbehaviour::gibberish:
      sendAll(socket, "* OK mail server ready\r\n");
      return false;
  }
  return false;
}

bool LoopbackServer::send(int socket, const ServedReply& reply) {
  if (!pause(reply.delay)) return false;
  if (reply.transfer <= Duration::zero()) return sendAll(socket, headOf(reply) + reply.body);
  if (!sendAll(socket, headOf(reply))) return false;
  for (const char byte : reply.body) {
    if (!pause(reply.transfer / static_cast<int>(reply.body.size()))) return false;
    if (!sendAll(socket, {&byte, 1})) return false;
  }
  return true;
}

bool LoopbackServer::pauseForBody(double share) {
  std::unique_lock lock(mutex_);
  const auto duration = std::chrono::duration_cast<Duration>(bodyTime_ * share);
  return !ending_.wait_for(lock, duration, [this] { return isEnding_; });
}

bool LoopbackServer::pause(Duration duration) {
  std::unique_lock lock(mutex_);
  return !ending_.wait_for(lock, duration, [this] { return isEnding_; });
}

}  // namespace quillo::contracts
