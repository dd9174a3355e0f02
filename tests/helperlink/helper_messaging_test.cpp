#include "helperlink/helper_messaging.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "helperlink/helper_link_services.h"
#include "helperlink/helper_protocol.h"

namespace veltrix {
namespace {

constexpr std::int16_t kBroken = -43;

struct FakeProcess {
  std::string name;
  std::int16_t nameStatus = 0;
};

// Processes with the pids 100, 101, ...
class FakeProcessTable : public ProcessTable {
 public:
  std::int16_t nextProcess(ProcessSerialNumber* psn) override {
    const std::size_t next = psn->pid == 0 ? 0 : psn->pid - 99;
    if (next == failAt)
      return kBroken;
    *psn = next < processes.size()
               ? ProcessSerialNumber{.startTime = 7, .pid = static_cast<std::uint32_t>(100 + next)}
               : ProcessSerialNumber{};
    return next < processes.size() ? std::int16_t{0} : kProcessNotFound;
  }
  std::int16_t processName(const ProcessSerialNumber& psn, std::string* name) override {
    const FakeProcess& process = processes.at(psn.pid - 100);
    if (process.nameStatus == 0)
      *name = process.name;
    return process.nameStatus;
  }

  std::vector<FakeProcess> processes;
  std::size_t failAt = SIZE_MAX;
};

class FakeTransport : public EventTransport {
 public:
  std::int32_t sendWaitingForReply(const Event& event, std::chrono::milliseconds timeout,
                                   EventReply* reply) override {
    waiting.push_back(event);
    lastTimeout = timeout;
    if (status == 0)
      *reply = answer;
    return status;
  }
  std::int32_t sendWithoutReply(const Event& event) override {
    notWaiting.push_back(event);
    return status;
  }

  std::int32_t status = 0;
  EventReply answer;
  std::chrono::milliseconds lastTimeout{0};
  std::vector<Event> waiting;
  std::vector<Event> notWaiting;
};

class HelperMessaging : public ::testing::Test {
 public:
  HelperMessaging() { fFormer = setHelperLinkServices({.processes = &fProcesses, .events = &fTransport}); }
  ~HelperMessaging() override { setHelperLinkServices(fFormer); }

 protected:
  static std::int16_t find(const char* pascal, ProcessSerialNumber* psn) {
    return VeltrixFindNamedProcess(reinterpret_cast<const unsigned char*>(pascal), psn);
  }
  void answerWith(const VeltrixDeviceList& list, std::size_t size = sizeof(VeltrixDeviceList)) {
    std::vector<std::byte> bytes(size);
    if (size > 0)
      std::memcpy(bytes.data(), &list, std::min(size, sizeof list));
    fTransport.answer = EventReply(EventParameter(kDirectObjectKeyword, kDeviceListType, bytes));
  }
  // A list in which no byte is 0.
  static VeltrixDeviceList oldList() {
    VeltrixDeviceList list;
    std::memset(&list, 0x5A, sizeof list);
    list.count = 2;
    return list;
  }
  static bool same(const VeltrixDeviceList& a, const VeltrixDeviceList& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
  }

  FakeProcessTable fProcesses;
  FakeTransport fTransport;
  HelperLinkServices fFormer;
};

TEST_F(HelperMessaging, FindsTheFirstProcessOfTheName) {
  fProcesses.processes = {{"bash"}, {"VeltrixHelper"}, {"VeltrixHelper"}};
  ProcessSerialNumber psn;
  EXPECT_EQ(VeltrixFindNamedProcess(kHelperProcessName, &psn), 0);
  EXPECT_EQ(psn, (ProcessSerialNumber{.startTime = 7, .pid = 101}));
}

TEST_F(HelperMessaging, FindsWithoutAPlaceForTheSerialNumber) {
  fProcesses.processes = {{"VeltrixHelper"}};
  EXPECT_EQ(VeltrixFindNamedProcess(kHelperProcessName, nullptr), 0);
}

TEST_F(HelperMessaging, LetterCaseOfAProcessNameDoesNotMatter) {
  fProcesses.processes = {{"veltrixhelper"}};
  EXPECT_EQ(VeltrixFindNamedProcess(kHelperProcessName, nullptr), 0);
  EXPECT_EQ(find("\x0DVELTRIXHELPER", nullptr), 0);
}

TEST_F(HelperMessaging, OtherBytesOfAProcessNameAreComparedRaw) {
  fProcesses.processes = {{"\xC3\xA4"}, {"a["}};
  EXPECT_EQ(find("\x02\xC3\x84", nullptr), kProcessNotFound);
  EXPECT_EQ(find("\x02"
                 "A{",
                 nullptr),
            kProcessNotFound);
  EXPECT_EQ(find("\x02"
                 "A[",
                 nullptr),
            0);
}

TEST_F(HelperMessaging, NamesWithACharacterMoreOrLessAreOthers) {
  fProcesses.processes = {
      {"VeltrixHelper2"}, {"VeltrixHelpe"}, {""}, {"xVeltrixHelper"}, {std::string(300, 'V')}};
  ProcessSerialNumber psn{.startTime = 1, .pid = 2};
  EXPECT_EQ(VeltrixFindNamedProcess(kHelperProcessName, &psn), kProcessNotFound);
  EXPECT_EQ(psn, (ProcessSerialNumber{.startTime = 1, .pid = 2}));
}

TEST_F(HelperMessaging, FailureToNameAProcessEndsTheWalk) {
  fProcesses.processes = {{"bash", kBroken}, {"VeltrixHelper"}};
  EXPECT_EQ(VeltrixFindNamedProcess(kHelperProcessName, nullptr), kBroken);
}

TEST_F(HelperMessaging, FailureOfTheWalkIsReturnedUnchanged) {
  fProcesses.processes = {{"bash"}, {"VeltrixHelper"}};
  fProcesses.failAt = 1;
  EXPECT_EQ(VeltrixFindNamedProcess(kHelperProcessName, nullptr), kBroken);
}

TEST_F(HelperMessaging, NoDeviceListIsAParameterErrorAndSendsNothing) {
  fProcesses.processes = {{"VeltrixHelper"}};
  EXPECT_EQ(VeltrixGetConnectedDevices(nullptr), -50);
  EXPECT_TRUE(fTransport.waiting.empty());
}

TEST_F(HelperMessaging, AbsentHelperKeepsTheOldDeviceList) {
  VeltrixDeviceList list = oldList();
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), -600);
  EXPECT_TRUE(same(list, oldList()));
  EXPECT_TRUE(fTransport.waiting.empty());
}

TEST_F(HelperMessaging, DeviceRequestGoesToTheProcessAndWaitsAQuarterOfASecond) {
  fProcesses.processes = {{"bash"}, {"VELTRIXhelper"}};
  VeltrixDeviceList sent = oldList();
  sent.count = 1;
  answerWith(sent);
  VeltrixDeviceList list{};
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), 0);
  EXPECT_TRUE(same(list, sent));
  ASSERT_EQ(fTransport.waiting.size(), 1U);
  const Event& event = fTransport.waiting[0];
  EXPECT_EQ(event.target().busName(), "com.aldmoor.VeltrixHelper.p101");
  EXPECT_EQ(event.eventClass(), 0x41564C58U);  // AVLX
  EXPECT_EQ(event.eventId(), 0x56584763U);     // VXGc
  EXPECT_EQ(event.parameter().type(), 0U);
  EXPECT_EQ(fTransport.lastTimeout, std::chrono::milliseconds(250));
}

TEST_F(HelperMessaging, FailedRequestIsReturnedUnchangedAndKeepsTheOldDeviceList) {
  fProcesses.processes = {{"VeltrixHelper"}};
  for (const std::int32_t status : {-1712, -609, -1708, -600}) {
    fTransport.status = status;
    VeltrixDeviceList list = oldList();
    EXPECT_EQ(VeltrixGetConnectedDevices(&list), status);
    EXPECT_TRUE(same(list, oldList()));
  }
}

TEST_F(HelperMessaging, ReplyWithoutParameterKeepsTheOldDeviceList) {
  fProcesses.processes = {{"VeltrixHelper"}};
  VeltrixDeviceList list = oldList();
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), -1701);
  EXPECT_TRUE(same(list, oldList()));
}

TEST_F(HelperMessaging, ReplyOfAnotherTypeKeepsTheOldDeviceList) {
  fProcesses.processes = {{"VeltrixHelper"}};
  fTransport.answer =
      EventReply(EventParameter(kDirectObjectKeyword, kUnsigned32Type, std::vector<std::byte>(4)));
  VeltrixDeviceList list = oldList();
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), -1700);
  EXPECT_TRUE(same(list, oldList()));
}

TEST_F(HelperMessaging, ShortReplyOverwritesOnlyItsOwnBytes) {
  fProcesses.processes = {{"VeltrixHelper"}};
  VeltrixDeviceList sent{};
  sent.count = 1;
  sent.device[0].productID = 0x2041;
  constexpr std::size_t kShort = 8;  // up to the product id of the first entry
  answerWith(sent, kShort);
  VeltrixDeviceList list = oldList();
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), 0);
  VeltrixDeviceList expected = oldList();
  std::memcpy(&expected, &sent, kShort);
  EXPECT_TRUE(same(list, expected));
}

TEST_F(HelperMessaging, EmptyReplyOverwritesNothing) {
  fProcesses.processes = {{"VeltrixHelper"}};
  answerWith({}, 0);
  VeltrixDeviceList list = oldList();
  EXPECT_EQ(VeltrixGetConnectedDevices(&list), 0);
  EXPECT_TRUE(same(list, oldList()));
}

TEST_F(HelperMessaging, LongReplyIsTruncatedToTheRecord) {
  fProcesses.processes = {{"VeltrixHelper"}};
  struct {
    VeltrixDeviceList list{};
    std::byte behind{0x77};
  } room;
  answerWith(oldList(), sizeof(VeltrixDeviceList) + 1);
  EXPECT_EQ(VeltrixGetConnectedDevices(&room.list), 0);
  EXPECT_TRUE(same(room.list, oldList()));
  EXPECT_EQ(room.behind, std::byte{0x77});
}

TEST_F(HelperMessaging, MessagesCarryTheirCodeAndDoNotWait) {
  fProcesses.processes = {{"VeltrixHelper"}};
  for (const std::uint32_t message : {kPaneShownMessage, kPaneLeftMessage, kSettingsChangedMessage}) {
    fTransport.notWaiting.clear();
    EXPECT_EQ(VeltrixSendMessageToHelper(message), 0);
    ASSERT_EQ(fTransport.notWaiting.size(), 1U);
    const Event& event = fTransport.notWaiting[0];
    EXPECT_EQ(event.target().busName(), "com.aldmoor.VeltrixHelper.p100");
    EXPECT_EQ(event.eventClass(), 0x41564C58U);  // AVLX
    EXPECT_EQ(event.eventId(), 0x5658486DU);     // VXHm
    std::uint32_t value = 0;
    std::size_t size = 0;
    EXPECT_EQ(event.parameter().read(0x2D2D2D2D, 0x6D61676E, &value, sizeof value, &size), 0);  // ----, magn
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(value, message);
  }
  EXPECT_TRUE(fTransport.waiting.empty());
}

TEST_F(HelperMessaging, MessageToAnAbsentHelperIsDropped) {
  EXPECT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), -600);
  EXPECT_TRUE(fTransport.notWaiting.empty());
}

TEST_F(HelperMessaging, FailedMessageIsReturnedUnchanged) {
  fProcesses.processes = {{"VeltrixHelper"}};
  fTransport.status = -609;
  EXPECT_EQ(VeltrixSendMessageToHelper(kSettingsChangedMessage), -609);
}

}  // namespace
}  // namespace veltrix
