// The same turn of the ball gives the same path of the pointer, however often the trackball reports.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

#include "driver/engine/pointer_motion.h"

namespace veltrix {
namespace {

constexpr std::array<int, 7> kRates{125, 250, 500, 1000, 2000, 4000, 8000};
constexpr double kTolerance = 0.01;  // of the length of the path

struct Point {
  double x = 0.0;
  double y = 0.0;
};

double distance(Point a, Point b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

// Where the ball is at a time; in mm of its surface, by seconds.
using BallPath = std::function<Point(double)>;

struct Setting {
  std::uint16_t resolution;
  std::uint8_t acceleration;
  double phase;  // s, by which the first report comes late
};

// A stroke in one direction: from rest to `speed` and back, as a hand does it.
struct Stroke {
  double begin;     // s
  double duration;  // s
  double speed;     // mm/s at its middle
  double angle;
};

Point along(const Stroke& stroke, double time) {
  const double share = std::clamp((time - stroke.begin) / stroke.duration, 0.0, 1.0);
  const double way = stroke.speed * stroke.duration *
                     (share / 2.0 - std::sin(2.0 * std::numbers::pi * share) / (4.0 * std::numbers::pi));
  return {way * std::cos(stroke.angle), way * std::sin(stroke.angle)};
}

BallPath strokes(std::vector<Stroke> all) {
  return [all = std::move(all)](double time) {
    Point sum;
    for (const Stroke& stroke : all) {
      const Point point = along(stroke, time);
      sum = {sum.x + point.x, sum.y + point.y};
    }
    return sum;
  };
}

// The pointer every 8 ms while the ball follows its path; a report without counts is not sent.
std::vector<Point> pointerPath(const BallPath& ball, double duration, int rate, const Setting& setting) {
  DriverRecord record{};
  record.speed = 250;
  record.acceleration = setting.acceleration;
  PointerMotion motion(DeviceModel{setting.resolution});
  motion.configure(record);
  const double countsPerMillimetre = setting.resolution / 25.4;
  const int reportsPerPoint = rate / 125;
  std::vector<Point> path;
  Point pointer;
  std::array<std::int64_t, 2> told{};
  for (int report = 1; report <= duration * rate; ++report) {
    const double time = static_cast<double>(report) / rate;
    const Point place = ball(time - setting.phase);
    const std::array<std::int64_t, 2> counts{std::llround(std::floor(place.x * countsPerMillimetre)),
                                             std::llround(std::floor(place.y * countsPerMillimetre))};
    const Movement movement =
        motion.move(Microseconds(std::llround(time * 1e6)), static_cast<std::int32_t>(counts[0] - told[0]),
                    static_cast<std::int32_t>(counts[1] - told[1]), {});
    told = counts;
    pointer = {pointer.x + movement.dx, pointer.y + movement.dy};
    if (report % reportsPerPoint == 0)
      path.push_back(pointer);
  }
  return path;
}

double lengthOf(const std::vector<Point>& path) {
  double length = 0.0;
  for (std::size_t index = 1; index < path.size(); ++index) length += distance(path[index - 1], path[index]);
  return length;
}

// How far the pointer is at most from where it is with 8000 reports a second, as a share of the whole path.
double deviation(const BallPath& ball, double duration, int rate, const Setting& setting) {
  const std::vector<Point> exact = pointerPath(ball, duration, 8000, setting);
  const std::vector<Point> path = pointerPath(ball, duration, rate, setting);
  double furthest = 0.0;
  for (std::size_t index = 0; index < path.size(); ++index)
    furthest = std::max(furthest, distance(path[index], exact[index]));
  return furthest / lengthOf(exact);
}

struct Profile {
  std::string name;
  double duration;
  BallPath ball;
};

std::vector<Profile> profiles() {
  std::vector<Profile> all;
  for (const double speed : {5.0, 25.0, 100.0, 250.0, 700.0})
    all.push_back({"even " + std::to_string(speed), 0.6, [speed](double time) {
                     return Point{std::max(time, 0.0) * speed, 0.4 * std::max(time, 0.0) * speed};
                   }});
  for (const double length : {0.06, 0.1, 0.2, 0.5}) {
    for (const double speed : {60.0, 200.0, 800.0})
      all.push_back({"stroke " + std::to_string(length) + " s, " + std::to_string(speed), 0.7,
                     strokes({{0.05, length, speed, 0.7}})});
  }
  all.push_back({"strokes with pauses", 1.5,
                 strokes({{0.0, 0.1, 300.0, 0.1},
                          {0.13, 0.1, 300.0, 0.1},
                          {0.33, 0.1, 300.0, 0.1},
                          {1.2, 0.1, 300.0, 0.1}})});
  all.push_back(
      {"back and forth", 1.0,
       strokes({{0.0, 0.12, 400.0, 0.0}, {0.12, 0.12, 400.0, std::numbers::pi}, {0.24, 0.12, 400.0, 0.0}})});
  all.push_back({"circles", 1.0, [](double time) {
                   const double angle = 2.0 * std::numbers::pi * 3.0 * std::max(time, 0.0);
                   return Point{10.0 * std::sin(angle), 10.0 - 10.0 * std::cos(angle)};
                 }});
  all.push_back({"ramp", 1.0, [](double time) {
                   return Point{0.0, -300.0 * std::max(time, 0.0) * std::max(time, 0.0)};
                 }});
  return all;
}

TEST(ReportRate, ThePathIsTheSameAtEveryRate) {
  for (const int rate : kRates) {
    double worst = 0.0;
    for (const Profile& profile : profiles()) {
      for (const std::uint16_t resolution : std::to_array<std::uint16_t>({400, 1600})) {
        for (const double phase : {0.0, 0.0013, 0.0047, 0.0071}) {
          const double away = deviation(profile.ball, profile.duration, rate, {resolution, 254, phase});
          EXPECT_LE(away, kTolerance)
              << rate << " Hz, " << profile.name << ", " << resolution << ", " << phase;
          worst = std::max(worst, away);
        }
      }
    }
    RecordProperty("worst_per_million_at_" + std::to_string(rate), static_cast<int>(worst * 1e6));
  }
}

RC_GTEST_PROP(ReportRate, AnyStrokesGiveTheSamePath, ()) {
  std::vector<Stroke> all;
  double end = 0.1;
  for (int count = *rc::gen::inRange(1, 6); count > 0; --count) {
    const Stroke stroke{end - *rc::gen::inRange(0, 100) * 0.001, *rc::gen::inRange(60, 400) * 0.001,
                        *rc::gen::inRange(10, 900) * 1.0, *rc::gen::inRange(0, 629) * 0.01};
    all.push_back(stroke);
    end = std::max(end, stroke.begin + stroke.duration + *rc::gen::inRange(0, 300) * 0.001);
  }
  const Setting setting{*rc::gen::element<std::uint16_t>(400, 800, 1600),
                        *rc::gen::inRange<std::uint8_t>(0, 255), *rc::gen::inRange(0, 80) * 0.0001};
  const std::vector<Point> exact = pointerPath(strokes(all), end, 8000, setting);
  const double allowed = kTolerance * lengthOf(exact) + 2.0;  // and whole steps differ
  for (const int rate : kRates) {
    const std::vector<Point> path = pointerPath(strokes(all), end, rate, setting);
    for (std::size_t index = 0; index < path.size(); ++index)
      RC_ASSERT(distance(path[index], exact[index]) <= allowed);
  }
}

}  // namespace
}  // namespace veltrix
