// Runs the tests. What GoogleTest prints goes to the real standard output, also while a recording platform stands in
// for it.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

namespace {

// Puts the real standard output back for as long as it lives.
class real_output {
 public:
  explicit real_output(std::FILE* real) : replaced_(stdout) { stdout = real; }
  ~real_output() { stdout = replaced_; }
  real_output(const real_output&) = delete;
  real_output& operator=(const real_output&) = delete;

 private:
  std::FILE* replaced_;
};

// The default printer, on the real standard output.
class printer_on_real_output : public testing::TestEventListener {
 public:
  explicit printer_on_real_output(testing::TestEventListener* printer) : printer_(printer), real_(stdout) {}

  void OnTestProgramStart(const testing::UnitTest& test) override {
    on_real([&] { printer_->OnTestProgramStart(test); });
  }
  void OnTestIterationStart(const testing::UnitTest& test, int iteration) override {
    on_real([&] { printer_->OnTestIterationStart(test, iteration); });
  }
  void OnEnvironmentsSetUpStart(const testing::UnitTest& test) override {
    on_real([&] { printer_->OnEnvironmentsSetUpStart(test); });
  }
  void OnEnvironmentsSetUpEnd(const testing::UnitTest& test) override {
    on_real([&] { printer_->OnEnvironmentsSetUpEnd(test); });
  }
  void OnTestSuiteStart(const testing::TestSuite& suite) override {
    on_real([&] { printer_->OnTestSuiteStart(suite); });
  }
  void OnTestStart(const testing::TestInfo& test) override {
    on_real([&] { printer_->OnTestStart(test); });
  }
  void OnTestPartResult(const testing::TestPartResult& part) override {
    on_real([&] { printer_->OnTestPartResult(part); });
  }
  void OnTestEnd(const testing::TestInfo& test) override {
    on_real([&] { printer_->OnTestEnd(test); });
  }
  void OnTestSuiteEnd(const testing::TestSuite& suite) override {
    on_real([&] { printer_->OnTestSuiteEnd(suite); });
  }
  void OnEnvironmentsTearDownStart(const testing::UnitTest& test) override {
    on_real([&] { printer_->OnEnvironmentsTearDownStart(test); });
  }
  void OnEnvironmentsTearDownEnd(const testing::UnitTest& test) override {
    on_real([&] { printer_->OnEnvironmentsTearDownEnd(test); });
  }
  void OnTestIterationEnd(const testing::UnitTest& test, int iteration) override {
    on_real([&] { printer_->OnTestIterationEnd(test, iteration); });
  }
  void OnTestProgramEnd(const testing::UnitTest& test) override {
    on_real([&] { printer_->OnTestProgramEnd(test); });
  }

 private:
  template <typename Call>
  void on_real(Call call) {
    const real_output output(real_);
    call();
  }

  std::unique_ptr<testing::TestEventListener> printer_;
  std::FILE* real_;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
  if (testing::TestEventListener* const printer = listeners.Release(listeners.default_result_printer()))
    listeners.Append(new printer_on_real_output(printer));
  return RUN_ALL_TESTS();
}
