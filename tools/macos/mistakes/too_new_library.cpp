// refused: no member named 'jthread' in namespace 'std'
#include <thread>
void tooNew() {
  std::jthread thread([] {});
}
