// Whatever lies in our own settings file: settings to begin with, of which nothing is out of range.
#include "app/model/store/saved_settings.h"
#include "tests/fuzz/fuzz_input.h"

using namespace zelvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto values = parseJson(textOf(data, size));
  if (!values || !values->is_object()) return 0;
  MemoryDefaults defaults(std::move(*values));
  const Time now = timeAt(1.79e9);
  const auto settings = savedSettings(defaults, now);
  require(settings.theme == ThemeID::a || settings.theme == ThemeID::b ||
          settings.theme == ThemeID::c);
  for (const std::string id : {"one", ""}) {
    const auto twice = pinsToggled(pinsToggled(settings.pinned, id), id);
    require(twice.size() <= settings.pinned.size() + 1);
  }
  saveAcked(defaults, settings.acked, now);
  require(savedSettings(defaults, now).acked == settings.acked);
  return 0;
}
