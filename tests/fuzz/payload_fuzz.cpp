// Whatever Claude Code hands to the hook, in pieces of any size: a small object or nothing, the
// same however it was cut, and a record that stays an object.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "app/hook/payload.h"
#include "app/hook/payload_filter.h"
#include "app/hook/record_update.h"

using namespace zelvane;

namespace {

std::optional<Json> payloadIn(std::string_view bytes, std::size_t piece) {
  return readPayload([&bytes, piece] {
    const auto next = bytes.substr(0, piece);
    bytes.remove_prefix(next.size());
    return next;
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto payload = payloadIn(bytes, 1 << 14);
  if (size < 4096 && payloadIn(bytes, 1) != payload) std::abort();
  if (!payload) return 0;
  Json record = Json::object();
  for (int i = 0; i < 3; ++i) record = recordAfter(record, *payload, "waiting", timeAt(1000 + i));
  if (!record.is_object()) std::abort();
  return 0;
}
