#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "helper/desktop/program_starter.h"
#include "platform/event_loop.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"
#include "util/file_descriptor.h"

namespace veltrix::testing {

// A desktop of the test's own: a home folder, programs that note how they were called, and a loop.
class DesktopFixture : public ::testing::Test {
 protected:
  using Record = std::vector<std::string>;  // the program's name and its arguments

  DesktopFixture() {
    for (const char* folder : {"home", "bin", "data/applications", "records", "runtime", "etc"}) {
      std::filesystem::create_directories(fFolder / folder);
    }
  }

  std::string home() const { return fFolder / "home"; }

  // A program in PATH that notes its call, then does what the script says.
  void addProgram(const std::string& name, const std::string& script = "") const {
    writeScript("bin/" + name,
                "{ printf '%s\\0' \"${0##*/}\" \"$@\" > \"$RECORDS/$$\"; } && "
                "/bin/mv \"$RECORDS/$$\" \"$RECORDS/$$.done\"\n" +
                    script);
  }
  void writeScript(const std::string& path, const std::string& script) const {
    writeFile(fFolder / path, "#!/bin/sh\n" + script);
    chmod((fFolder / path).c_str(), 0700);
  }
  void addEntry(const std::string& identifier, const std::string& lines) const {
    writeFile(fFolder / ("data/applications/" + identifier + ".desktop"),
              "[Desktop Entry]\nType=Application\nName=" + identifier + "\n" + lines);
  }

  // Runs the loop until the condition holds; false when that takes too long.
  bool runUntil(const std::function<bool()>& condition,
                std::chrono::milliseconds limit = std::chrono::seconds(20)) const {
    constexpr std::uint64_t kStepMicroseconds = 5000;
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
      if (std::chrono::steady_clock::now() > end || sd_event_run(fLoop.get(), kStepMicroseconds) < 0) {
        return false;
      }
    }
    return true;
  }

  // How the call ends that `begin` begins; it must end once.
  Status outcomeOf(const std::function<void(ProgramStarter::Exit)>& begin) const {
    std::optional<Status> outcome;
    begin([&outcome](const Status& status) {
      EXPECT_FALSE(outcome.has_value());
      outcome = status;
    });
    EXPECT_TRUE(runUntil([&outcome] { return outcome.has_value(); }));
    return outcome.value_or(Error{0, "(nothing)", {}});
  }

  static std::string reasonOf(const Status& status) { return status ? "(none)" : status.error().message; }

  // The calls so far, in no order that means anything.
  std::vector<Record> records() const {
    std::vector<Record> all;
    for (const std::string& name : namesIn(fFolder / "records")) {
      if (name.ends_with(".done")) {
        all.push_back(splitRecord(readFile(fFolder / ("records/" + name))));
      }
    }
    return all;
  }
  // The one call that has been or will be made.
  Record onlyRecord() const {
    EXPECT_TRUE(runUntil([this] { return !records().empty(); }));
    const auto all = records();
    EXPECT_EQ(all.size(), 1U);
    return all.empty() ? Record() : all.front();
  }
  void forgetRecords() const {
    std::filesystem::remove_all(fFolder / "records");
    std::filesystem::create_directories(fFolder / "records");
  }

  // Takes the place of the journal; the identifiers are kept.
  ProgramStarter::Output journal() {
    return [this](const std::string& identifier) {
      fIdentifiers.push_back(identifier);
      return FileDescriptor(fcntl(fJournal.get(), F_DUPFD_CLOEXEC, 0));
    };
  }
  std::string journalText() const { return readFile("/proc/self/fd/" + std::to_string(fJournal.get())); }

  TemporaryFolder fFolder;
  FileDescriptor fJournal{memfd_create("journal", MFD_CLOEXEC)};
  std::vector<std::string> fIdentifiers;
  EventLoopHandle fLoop = makeEventLoop();

 private:
  static Record splitRecord(const std::string& bytes) {
    Record words;
    for (std::size_t at = 0; at < bytes.size(); at = bytes.find('\0', at) + 1) {
      words.push_back(bytes.substr(at, bytes.find('\0', at) - at));
    }
    return words;
  }

  ScopedEnvironment fHome{"HOME", fFolder / "home"};
  ScopedEnvironment fPath{"PATH", fFolder / "bin"};
  ScopedEnvironment fDataHome{"XDG_DATA_HOME", fFolder / "data"};
  ScopedEnvironment fDataFolders{"XDG_DATA_DIRS", fFolder / "nothing"};
  ScopedEnvironment fConfigHome{"XDG_CONFIG_HOME", std::nullopt};
  ScopedEnvironment fConfigFolders{"XDG_CONFIG_DIRS", fFolder / "etc"};
  ScopedEnvironment fDesktop{"XDG_CURRENT_DESKTOP", "Budgie:GNOME"};
  ScopedEnvironment fRuntime{"XDG_RUNTIME_DIR", fFolder / "runtime"};
  ScopedEnvironment fRecords{"RECORDS", fFolder / "records"};
};

}  // namespace veltrix::testing
