#include "core/standard_defaults.h"

#include <functional>

#include "platform/macos/preferences.h"

#include "core/bundle.h"

namespace zelvane {
namespace {

/// The system keeps them as typed values, each under its key, and takes care of two writers.
class SystemDefaults : public UserDefaults {
 public:
  Json values() const override {
    auto all = parseJson(text());
    return all && all->is_object() ? std::move(*all) : Json::object();
  }
  void set(const std::string& key, const Json& value) override {
    platform::setPreference(Bundle::identifier, key,
                            value.dump(-1, ' ', false, Json::error_handler_t::replace));
  }
  void remove(const std::string& key) override {
    platform::removePreference(Bundle::identifier, key);
  }
  std::uint64_t version() const override { return std::hash<std::string>()(text()); }

 private:
  static std::string text() { return platform::preferences(Bundle::identifier); }
};

}  // namespace

std::shared_ptr<UserDefaults> standardDefaults() { return std::make_shared<SystemDefaults>(); }

}  // namespace zelvane
