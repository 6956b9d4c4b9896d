// The user's session bus: one connection, kept open. One thread at a time.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <systemd/sd-bus.h>
#include <utility>
#include <vector>

namespace zelvane {

/// Whom a call goes to.
struct BusObject {
  std::string name;
  std::string path;
  std::string interface;
};

/// What came back; reading takes its values in order. Empty when the call failed.
class BusReply {
 public:
  explicit BusReply(sd_bus_message* message = nullptr) : message_(message) {}

  explicit operator bool() const { return message_ != nullptr; }
  std::optional<std::string> text();
  std::optional<std::int64_t> number();  ///< of types b, i, u, x or t, also within a variant
  std::vector<std::string> texts();      ///< an array of texts
  /// An array of dictionaries: of each, the texts among its values.
  std::vector<std::map<std::string, std::string>> records();

 private:
  struct Unref {
    void operator()(sd_bus_message* message) const;
  };
  std::map<std::string, std::string> record();
  std::optional<std::string> variantText();

  std::unique_ptr<sd_bus_message, Unref> message_;
};

/// No call starts a program, lasts longer than 0.8 s, or goes to a name that did not answer since
/// `forgive`. A connection that broke is opened anew by the next call.
class Bus {
 public:
  Bus() = default;
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;
  ~Bus();

  /// Lets those be asked again that did not answer.
  void forgive();
  /// Whether the name did not answer in time since `forgive`.
  bool isSilent(const std::string& name) const { return silent_.contains(name); }
  /// Whether the name has an owner now.
  bool hasOwner(const std::string& name);

  BusReply call(const BusObject& to, const char* method);
  BusReply call(const BusObject& to, const char* method, std::int32_t argument);
  /// Texts one by one, not as an array.
  BusReply call(const BusObject& to, const char* method, const std::vector<std::string>& texts);
  /// One array of texts.
  BusReply callWithList(const BusObject& to, const char* method,
                        const std::vector<std::string>& texts);
  /// A search result's activation: the id, an empty array of texts, the time 0.
  BusReply activateResult(const BusObject& to, const std::string& id);
  /// An application's action with one text as its parameter.
  BusReply activateAction(const BusObject& to, const std::string& action,
                          const std::string& parameter);

 private:
  /// A message to be filled and sent; null when there is no connection.
  sd_bus_message* begin(const BusObject& to, const char* method);
  BusReply send(const BusObject& to, sd_bus_message* message, bool filled);
  bool open();
  void close();

  sd_bus* bus_ = nullptr;
  std::set<std::string> silent_;
  bool unreachable_ = false;
};

}  // namespace zelvane
