// A connection of a client, on which one request is read and one answer is written, with a limit to
// each wait and to the bytes that are read. One thread at a time.
#pragma once

#include <openssl/types.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tarnwick {

class Connection {
  public:
    // Takes the socket, which does not block, and reads at most `mostBytes`. With a session of the
    // socket it is encrypted; the first read shakes hands.
    Connection(int socket, std::size_t mostBytes, std::shared_ptr<SSL> session = nullptr);
    ~Connection(); // closes the socket
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // From now on reading and writing end at this time.
    void endAt(std::chrono::steady_clock::time_point end) { end_ = end; }

    // The number of bytes read, up to `size`. 0: the client sends no more. -1: the time is over,
    // the limit of bytes is reached, or the connection failed.
    std::ptrdiff_t read(char* bytes, std::size_t size);
    bool write(std::string_view bytes); // all of them, or false
    bool isReadable();                  // without waiting
    // Whether the client has disconnected, as far as the system knows.
    bool hasLeft() const;
    // Ends the answer. Reads a little of what the client still sends, because closing a connection
    // with unread bytes would take the answer from the client.
    void finish();

    int socket() const { return socket_; }
    struct Address {
        std::string text; // "127.0.0.1", "::1"
        int port = 0;
        bool isLoopback = false;
    };
    Address local() const { return localOf(socket_); }
    Address remote() const { return remoteOf(socket_); }
    // Of a socket that is no connection yet.
    static Address localOf(int socket);
    static Address remoteOf(int socket);

  private:
    bool waitFor(short events) const;
    template <class Move> std::ptrdiff_t moved(short events, Move move) const;
    std::ptrdiff_t receive(char* bytes, std::size_t size);
    std::ptrdiff_t send(std::string_view bytes);

    int socket_;
    std::shared_ptr<SSL> session_; // null: not encrypted
    std::size_t left_;             // bytes that may still be read
    std::chrono::steady_clock::time_point end_;
    std::string buffer_;
    std::size_t at_ = 0; // of the next byte in buffer_
};

} // namespace tarnwick
