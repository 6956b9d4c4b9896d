// Gives every test of this program the toolkit's application object, off screen.
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>
#include <memory>

namespace zelvane {
namespace {

class ToolkitEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    application_ = std::make_unique<QApplication>(count_, arguments_);
  }
  void TearDown() override { application_.reset(); }

 private:
  char name_[8] = "ui_test";
  char* arguments_[2] = {name_, nullptr};
  int count_ = 1;
  std::unique_ptr<QApplication> application_;
};

[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new ToolkitEnvironment);

}  // namespace
}  // namespace zelvane
