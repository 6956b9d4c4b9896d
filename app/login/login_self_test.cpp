#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <unistd.h>

#include "core/json_file.h"

#include "app/login/login_item.h"

namespace zelvane::LoginItem {
namespace {

namespace fs = std::filesystem;

/// A folder with three copies of an application, and the login item in it.
class Scratch {
 public:
  Scratch() {
    std::error_code failed;
    auto name = (fs::temp_directory_path(failed) / "zelvane-login-XXXXXX").string();
    folder_ = mkdtemp(name.data()) ? name : "";
    setenv("ZELVANE_LAUNCHAGENT", (folder_ + "/agent.plist").c_str(), /*replace=*/1);
    for (const char* place : {"Downloads", "Applications", "Other"}) {
      fs::create_directories(app(place), failed);
    }
  }
  ~Scratch() {
    unsetenv("ZELVANE_LAUNCHAGENT");
    std::error_code ignored;
    if (!folder_.empty()) fs::remove_all(folder_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string app(const std::string& place) const { return folder_ + "/" + place + "/Zelvane.app"; }
  void remove(const std::string& place) const {
    std::error_code ignored;
    fs::remove_all(app(place), ignored);
  }

 private:
  std::string folder_;
};

}  // namespace

bool selfTest(std::ostream& out) {
  const Scratch scratch;
  bool all = true;
  const auto check = [&](bool passed, const char* what) {
    out << (passed ? "통과 " : "실패 ") << what << '\n';
    all = all && passed;
  };
  const auto downloads = scratch.app("Downloads"), applications = scratch.app("Applications"),
             other = scratch.app("Other");
  check(!repairIfMoved(applications), "꺼져 있으면 아무것도 안 함");
  check(!isOn(), "  └ 파일도 만들지 않음");
  set(true, downloads);
  check(!repairIfMoved(applications) && target() == downloads,
        "옛 위치에 앱이 아직 있으면 건드리지 않음 (사용자 선택 존중)");
  scratch.remove("Downloads");
  check(repairIfMoved(applications) && target() == applications,
        "옛 위치에 앱이 없으면 지금 위치로 고침");
  check(!repairIfMoved(applications), "  └ 같은 위치면 다시 쓰지 않음");
  scratch.remove("Applications");
  check(!repairIfMoved("/Volumes/Zelvane/Zelvane.app") && target() == applications,
        "DMG 안에서 실행 중이면 그 주소를 적지 않음");
  check(!repairIfMoved("/private/var/folders/x/AppTranslocation/ABC/d/Zelvane.app") &&
            target() == applications,
        "임시 실행 위치(App Translocation)도 적지 않음");
  check(repairIfMoved(other) && target() == other, "다시 옮겨도 고침");
  const auto text = readFile(path(), std::size_t{1} << 16);
  check(text == systemLoginFormat().text(other), "  └ 나머지 설정은 그대로");
  return all;
}

}  // namespace zelvane::LoginItem
