#include "tests/driver/inertia_page.h"

#include <cmath>
#include <iomanip>
#include <ios>
#include <locale>
#include <sstream>
#include <vector>

#include "driver/engine/wheel_scroll.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;

constexpr ScrollParameters kFactory{60, 110, 250, 90, 1};
constexpr double kUnitsPerLine = 40.0;
constexpr auto kTick = milliseconds(8);

constexpr double kLeft = 60.0;
constexpr double kBottom = 350.0;
constexpr double kPixelsPerMillisecond = 0.5;
constexpr double kPixelsPerLine = 15.0;
constexpr int kLastMillisecond = 1200;
constexpr int kMostLines = 20;

// A wheel with the factory settings after three detents so many milliseconds apart, the last one at time 0.
class TurnedWheel {
 public:
  explicit TurnedWheel(int apart) : fScroll(DeviceModel{400}) {
    DriverRecord record{};
    record.inertialScroll = 1;
    record.action[kWheelSlot] = {20, 0, 3, 0};
    fScroll.configure(record, kFactory);
    Output output;
    for (int detent = -2; detent <= 0; ++detent)
      fScroll.turn(milliseconds(detent * apart), kHiResPerDetent, 0, output);
  }

  Microseconds deadline() const { return fScroll.deadline(); }

  // Lines that it rolled on until this time.
  double linesUntil(Microseconds time) {
    Output output;
    // The last call before `time` is left out, so that the one at `time` is due.
    while (fScroll.deadline() <= time - kTick) fScroll.expire(fScroll.deadline(), output);
    fScroll.expire(time, output);
    for (const OutputEvent& event : output.events())
      fUnits += event.code == REL_WHEEL_HI_RES ? event.value : 0;
    return fUnits / kUnitsPerLine;
  }

 private:
  WheelScroll fScroll;
  int fUnits = 0;
};

std::ostringstream plainNumbers(int decimals) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << std::fixed << std::setprecision(decimals);
  return text;
}

double across(double time) {
  return kLeft + time * kPixelsPerMillisecond;
}

double up(double lines) {
  return kBottom - lines * kPixelsPerLine;
}

void addAxes(std::ostringstream& svg) {
  svg << "<g stroke=\"#c8ccd2\" stroke-width=\"1\">\n";
  for (int lines = 0; lines <= kMostLines; lines += 5)
    svg << "<path d=\"M " << across(0) << " " << up(lines) << " H " << across(kLastMillisecond) << "\"/>\n";
  svg << "</g>\n<g fill=\"#30343a\" text-anchor=\"end\">\n";
  for (int lines = 0; lines <= kMostLines; lines += 5)
    svg << "<text x=\"" << across(0) - 8.0 << "\" y=\"" << up(lines) + 5.0 << "\">" << lines << "</text>\n";
  svg << "</g>\n<g fill=\"#30343a\" text-anchor=\"middle\">\n";
  for (int time = 0; time <= kLastMillisecond; time += 200)
    svg << "<text x=\"" << across(time) << "\" y=\"" << kBottom + 22.0 << "\">" << time << "</text>\n";
  svg << "<text x=\"" << across(kLastMillisecond / 2.0) << "\" y=\"" << kBottom + 44.0
      << "\">milliseconds since the last detent</text>\n</g>\n"
      << "<text x=\"" << across(0) - 40.0 << "\" y=\"" << up(kMostLines) - 14.0
      << "\" fill=\"#30343a\">lines that the page rolled on</text>\n";
}

void addCurve(std::ostringstream& svg, int apart, const char* color, double labelTime, double labelLines) {
  TurnedWheel wheel(apart);
  svg << "<path fill=\"none\" stroke-width=\"2.5\" stroke=\"" << color << "\" d=\"M";
  for (int time = 0; time <= kLastMillisecond; time += 20)
    svg << ' ' << across(time) << " " << up(wheel.linesUntil(milliseconds(time)));
  svg << "\"/>\n<text x=\"" << across(labelTime) << "\" y=\"" << up(labelLines) << "\" fill=\"" << color
      << "\">" << apart << " ms</text>\n";
}

}  // namespace

std::string inertiaTable() {
  std::ostringstream table = plainNumbers(1);
  TurnedWheel wheel(40);
  double time = static_cast<double>(wheel.deadline().count()) / 1000.0;
  double duration = 40.0;
  double before = 0.0;
  for (int step = 1; wheel.deadline() != kNever; ++step) {
    duration *= kFactory.timeDecay / 100.0;
    const double lines = wheel.linesUntil(Microseconds(std::llround(std::ceil((time + duration) * 1000.0))));
    table << "| " << step << " | " << time << " | " << duration << " | " << lines - before << " | " << lines
          << " |\n";
    time += duration;
    before = lines;
  }
  return table.str();
}

std::string inertiaPlot() {
  std::ostringstream svg = plainNumbers(1);
  svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 720 410\" font-family=\"sans-serif\" "
         "font-size=\"14\">\n"
         "<title>How far the page rolls on with the factory parameters</title>\n"
         "<rect width=\"720\" height=\"410\" fill=\"#ffffff\"/>\n";
  addAxes(svg);
  addCurve(svg, 20, "#0b6e4f", 200.0, 15.6);
  addCurve(svg, 40, "#1d4ed8", 480.0, 12.9);
  addCurve(svg, 60, "#b45309", 800.0, 13.6);
  svg << "</svg>\n";
  return svg.str();
}

}  // namespace veltrix
