#include "helper/desktop/player_ranking.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

PlayerRanking twoPlayers() {
  PlayerRanking ranking;
  ranking.setOwner("a", ":1");
  ranking.setOwner("b", ":2");
  return ranking;
}

TEST(PlayerRanking, WithoutPlayersNoneIsMeant) {
  EXPECT_EQ(PlayerRanking().best(), "");
}

TEST(PlayerRanking, OfIdleOnesTheFirstIsMeant) {
  EXPECT_EQ(twoPlayers().best(), ":1");
}

TEST(PlayerRanking, OneThatPlaysIsMeantEvenWhenAnotherWasPausedLater) {
  PlayerRanking ranking = twoPlayers();
  ranking.setStatus(":2", "Playing");
  ranking.setStatus(":1", "Playing");
  ranking.setStatus(":1", "Paused");
  EXPECT_EQ(ranking.best(), ":2");
}

TEST(PlayerRanking, OfTwoThatPlayTheLaterIsMeant) {
  PlayerRanking ranking = twoPlayers();
  ranking.setStatus(":2", "Playing");
  ranking.setStatus(":1", "Playing");
  EXPECT_EQ(ranking.best(), ":1");
}

TEST(PlayerRanking, LastPausedOneIsMeantWhenNonePlays) {
  PlayerRanking ranking = twoPlayers();
  ranking.setStatus(":1", "Paused");
  ranking.setStatus(":2", "Paused");
  EXPECT_EQ(ranking.best(), ":2");
}

TEST(PlayerRanking, StoppingIsNoActivity) {
  PlayerRanking ranking = twoPlayers();
  ranking.setStatus(":2", "Paused");
  ranking.setStatus(":1", "Stopped");
  EXPECT_EQ(ranking.best(), ":2");
}

TEST(PlayerRanking, WhatAPlayerSaysWhenAskedIsOverruledByWhatItDid) {
  PlayerRanking ranking = twoPlayers();
  ranking.learnStatus("b", "Playing");
  EXPECT_EQ(ranking.best(), ":2");
  ranking.setStatus(":2", "Paused");
  ranking.learnStatus("b", "Playing");
  ranking.setStatus(":1", "Paused");
  EXPECT_EQ(ranking.best(), ":1");
}

TEST(PlayerRanking, PlayerThatGoesIsForgotten) {
  PlayerRanking ranking = twoPlayers();
  ranking.setStatus(":1", "Playing");
  ranking.setOwner("a", "");
  EXPECT_EQ(ranking.best(), ":2");
  ranking.setOwner("b", "");
  EXPECT_EQ(ranking.best(), "");
}

TEST(PlayerRanking, NewConnectionOfAPlayerBeginsAnew) {
  PlayerRanking ranking = twoPlayers();
  ranking.setStatus(":2", "Playing");
  ranking.setOwner("b", ":3");
  EXPECT_EQ(ranking.best(), ":1");
  ranking.setOwner("b", ":3");
  ranking.setStatus(":2", "Playing");
  EXPECT_EQ(ranking.best(), ":1");
}

}  // namespace
}  // namespace veltrix
