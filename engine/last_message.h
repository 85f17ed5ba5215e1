// What every book keeps of its last operation, and the frame of every public operation that can fail.
#pragma once

#include <exception>
#include <new>
#include <string>
#include <utility>

namespace rubrica {

// A book's last message: "ok", a text that begins with "warning: ", or what went wrong.
class LastMessage {
 public:
  // Both short enough to need no memory of their own.
  static constexpr char kGeneralFailure[] = "general failure";
  static constexpr char kNoMemory[] = "bad allocation";

  void setOk() { _message.clear(); }
  void setMessage(std::string message) { _message = std::move(message); }
  // The same where memory may have run out: a text that finds no room becomes "general failure".
  void setFailure(const char* message) noexcept {
    try {
      _message = message;
    } catch (...) {
      _message = kGeneralFailure;
    }
  }
  // Never null; valid until the next change.
  const char* message() const { return _message.empty() ? "ok" : _message.c_str(); }

 private:
  std::string _message;
};

// An exception becomes the last message and the operation's failure value; a success leaves the message as it was,
// which is how setters without a result behave.
template <class Result, class Body>
Result attempt(LastMessage& last, Result failure, Body&& body) {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    last.setFailure(LastMessage::kNoMemory);
  } catch (const std::exception& error) {
    last.setFailure(error.what());
  } catch (...) {
    last.setFailure(LastMessage::kGeneralFailure);
  }
  return failure;
}

template <class Body>
void attempt(LastMessage& last, Body&& body) {
  attempt(last, false, [&] {
    body();
    return true;
  });
}

// The same, with "ok" first, so that the body may leave a warning.
template <class Result, class Body>
Result guarded(LastMessage& last, Result failure, Body&& body) {
  last.setOk();
  return attempt(last, std::move(failure), std::forward<Body>(body));
}

template <class Body>
void guarded(LastMessage& last, Body&& body) {
  last.setOk();
  attempt(last, std::forward<Body>(body));
}

}  // namespace rubrica
