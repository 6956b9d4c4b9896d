#include "app/terminal/linux/bus.h"

#include <cerrno>
#include <chrono>

#include "app/terminal/linux/loaded_library.h"

namespace zelvane {
namespace {

constexpr std::uint64_t longestCall = 800'000;  // microseconds

struct SystemdBus {
  decltype(sd_bus_open_user)* openUser;
  decltype(sd_bus_close_unref)* closeUnref;
  decltype(sd_bus_is_open)* isOpen;
  decltype(sd_bus_is_ready)* isReady;
  decltype(sd_bus_process)* process;
  decltype(sd_bus_wait)* wait;
  decltype(sd_bus_call)* call;
  decltype(sd_bus_message_new_method_call)* newCall;
  decltype(sd_bus_message_set_auto_start)* setAutoStart;
  decltype(sd_bus_message_append)* append;
  decltype(sd_bus_message_append_strv)* appendTexts;
  decltype(sd_bus_message_unref)* unref;
  decltype(sd_bus_message_peek_type)* peekType;
  decltype(sd_bus_message_read_basic)* readBasic;
  decltype(sd_bus_message_enter_container)* enter;
  decltype(sd_bus_message_exit_container)* exit;
  decltype(sd_bus_message_skip)* skip;
  bool whole;

  SystemdBus() {
    LoadedLibrary library("libsystemd.so.0");
    library.find("sd_bus_open_user", openUser);
    library.find("sd_bus_close_unref", closeUnref);
    library.find("sd_bus_is_open", isOpen);
    library.find("sd_bus_is_ready", isReady);
    library.find("sd_bus_process", process);
    library.find("sd_bus_wait", wait);
    library.find("sd_bus_call", call);
    library.find("sd_bus_message_new_method_call", newCall);
    library.find("sd_bus_message_set_auto_start", setAutoStart);
    library.find("sd_bus_message_append", append);
    library.find("sd_bus_message_append_strv", appendTexts);
    library.find("sd_bus_message_unref", unref);
    library.find("sd_bus_message_peek_type", peekType);
    library.find("sd_bus_message_read_basic", readBasic);
    library.find("sd_bus_message_enter_container", enter);
    library.find("sd_bus_message_exit_container", exit);
    library.find("sd_bus_message_skip", skip);
    whole = library.isWhole();
  }
};

const SystemdBus& systemd() {
  static const SystemdBus functions;
  return functions;
}

std::vector<char*> pointers(std::vector<std::string> const& texts) {
  std::vector<char*> list;
  for (const auto& text : texts) list.push_back(const_cast<char*>(text.c_str()));
  list.push_back(nullptr);
  return list;
}

}  // namespace

void BusReply::Unref::operator()(sd_bus_message* message) const { systemd().unref(message); }

std::optional<std::string> BusReply::text() {
  const char* value = nullptr;
  if (!message_ || systemd().readBasic(message_.get(), SD_BUS_TYPE_STRING, &value) <= 0) {
    return std::nullopt;
  }
  return value;
}

std::optional<std::int64_t> BusReply::number() {
  char type = 0;
  const char* contents = nullptr;
  if (!message_ || systemd().peekType(message_.get(), &type, &contents) <= 0) return std::nullopt;
  if (type == SD_BUS_TYPE_VARIANT) {
    const std::string inside = contents;
    if (systemd().enter(message_.get(), SD_BUS_TYPE_VARIANT, inside.c_str()) <= 0) {
      return std::nullopt;
    }
    const auto value = number();
    systemd().exit(message_.get());
    return value;
  }
  union {
    int truth;
    std::int32_t small;
    std::uint32_t smallPositive;
    std::int64_t large;
  } value{};
  if (std::string_view("biuxt").find(type) == std::string_view::npos ||
      systemd().readBasic(message_.get(), type, &value) <= 0) {
    return std::nullopt;
  }
  if (type == SD_BUS_TYPE_BOOLEAN) return value.truth;
  if (type == SD_BUS_TYPE_INT32) return value.small;
  return type == SD_BUS_TYPE_UINT32 ? value.smallPositive : value.large;
}

std::vector<std::string> BusReply::texts() {
  std::vector<std::string> list;
  if (!message_ || systemd().enter(message_.get(), SD_BUS_TYPE_ARRAY, "s") <= 0) return list;
  while (auto one = text()) list.push_back(std::move(*one));
  systemd().exit(message_.get());
  return list;
}

std::optional<std::string> BusReply::variantText() {
  char type = 0;
  const char* contents = nullptr;
  if (systemd().peekType(message_.get(), &type, &contents) <= 0 || type != SD_BUS_TYPE_VARIANT ||
      std::string_view(contents) != "s") {
    systemd().skip(message_.get(), "v");
    return std::nullopt;
  }
  systemd().enter(message_.get(), SD_BUS_TYPE_VARIANT, "s");
  auto value = text();
  systemd().exit(message_.get());
  return value;
}

std::map<std::string, std::string> BusReply::record() {
  std::map<std::string, std::string> record;
  while (systemd().enter(message_.get(), SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
    const auto key = text();
    auto value = variantText();
    if (key && value) record[*key] = std::move(*value);
    systemd().exit(message_.get());
  }
  return record;
}

std::vector<std::map<std::string, std::string>> BusReply::records() {
  std::vector<std::map<std::string, std::string>> list;
  if (!message_ || systemd().enter(message_.get(), SD_BUS_TYPE_ARRAY, "a{sv}") <= 0) return list;
  while (systemd().enter(message_.get(), SD_BUS_TYPE_ARRAY, "{sv}") > 0) {
    list.push_back(record());
    if (systemd().exit(message_.get()) <= 0) break;
  }
  return list;
}

void Bus::forgive() {
  silent_.clear();
  unreachable_ = false;
}

Bus::~Bus() { close(); }

void Bus::close() {
  if (bus_) systemd().closeUnref(bus_);
  bus_ = nullptr;
}

bool Bus::open() {
  if (!systemd().whole) return false;
  // What arrived by itself meanwhile is thrown away; so is a connection that turned out broken.
  while (bus_ && systemd().process(bus_, nullptr) > 0) {
  }
  if (bus_ && systemd().isOpen(bus_) > 0) return true;
  close();
  if (systemd().openUser(&bus_) < 0) {
    bus_ = nullptr;
    return false;
  }
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::microseconds(longestCall);
  while (systemd().isReady(bus_) == 0 && std::chrono::steady_clock::now() < deadline) {
    const int result = systemd().process(bus_, nullptr);
    if (result < 0) break;
    if (result == 0) systemd().wait(bus_, longestCall / 8);
  }
  if (systemd().isReady(bus_) > 0) return true;
  close();
  return false;
}

bool Bus::hasOwner(const std::string& name) {
  const BusObject daemon{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};
  return call(daemon, "NameHasOwner", std::vector{name}).number() == 1;
}

sd_bus_message* Bus::begin(const BusObject& to, const char* method) {
  if (unreachable_ || silent_.contains(to.name)) return nullptr;
  unreachable_ = !open();
  if (unreachable_) return nullptr;
  sd_bus_message* message = nullptr;
  const int result = systemd().newCall(bus_, &message, to.name.c_str(), to.path.c_str(),
                                       to.interface.c_str(), method);
  if (result < 0) return nullptr;
  systemd().setAutoStart(message, 0);
  return message;
}

BusReply Bus::send(const BusObject& to, sd_bus_message* message, bool filled) {
  if (!message) return BusReply();
  sd_bus_message* reply = nullptr;
  const int result = filled ? systemd().call(bus_, message, longestCall, nullptr, &reply) : -EINVAL;
  systemd().unref(message);
  if (result == -ETIMEDOUT) silent_.insert(to.name);
  return BusReply(result < 0 ? nullptr : reply);
}

BusReply Bus::call(const BusObject& to, const char* method) {
  return send(to, begin(to, method), true);
}

BusReply Bus::call(const BusObject& to, const char* method, std::int32_t argument) {
  auto* message = begin(to, method);
  return send(to, message, message && systemd().append(message, "i", argument) >= 0);
}

BusReply Bus::call(const BusObject& to, const char* method, const std::vector<std::string>& texts) {
  auto* message = begin(to, method);
  bool filled = message != nullptr;
  for (const auto& text : texts) {
    filled = filled && systemd().append(message, "s", text.c_str()) >= 0;
  }
  return send(to, message, filled);
}

BusReply Bus::callWithList(const BusObject& to, const char* method,
                           const std::vector<std::string>& texts) {
  auto* message = begin(to, method);
  auto list = pointers(texts);
  return send(to, message, message && systemd().appendTexts(message, list.data()) >= 0);
}

BusReply Bus::activateResult(const BusObject& to, const std::string& id) {
  auto* message = begin(to, "ActivateResult");
  return send(to, message, message && systemd().append(message, "sasu", id.c_str(), 0, 0) >= 0);
}

BusReply Bus::activateAction(const BusObject& to, const std::string& action,
                             const std::string& parameter) {
  auto* message = begin(to, "Activate");
  return send(to, message,
              message && systemd().append(message, "sava{sv}", action.c_str(), 1, "s",
                                          parameter.c_str(), 0) >= 0);
}

}  // namespace zelvane
