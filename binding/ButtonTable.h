// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The buttons of a mouse as the page shows them. Every loop over the buttons uses the order of these rows, in
// which 4 stands before 3.
#pragma once

#include <QPoint>
#include <array>

struct ButtonRow {
    int button;          // index into the record
    const char *caption; // object name of the row's widget
    const char *marker;  // object name of the marker on the picture
    int scroll;          // position of the list's scroll bar that shows the row
};
constexpr std::array<ButtonRow, 12> ButtonRows = {{
    {0, "FireKey", "Number1", 0},
    {1, "RightKey", "Number2", 20},
    {2, "BackKey", "Number3", 40},
    {4, "StartPause", "Number4", 60},
    {3, "TopMusic", "Number5", 80},
    {5, "BackMusic", "Number6", 100},
    {6, "Button7", "Number7", 120},
    {7, "Button8", "Number8", 140},
    {8, "Button9", "Number9", 160},
    {9, "Button10", "Number10", 180},
    {10, "Button11", "Number11", 200},
    {11, "Button12", "Number12", 220},
}};
constexpr std::size_t SixthRow = 5; // exists on the first model only

// Models by the number of their picture, from 0; the index of the catalogue's models starts at 6.
constexpr int FirstModelIndex = 6;
constexpr int ModelCount = 4;

// Top left corners of the markers on a model's picture, by row, in pixels.
using MarkerPlaces = std::array<QPoint, ButtonRows.size()>;
constexpr QPoint Unmoved{-1, -1};
constexpr std::array<MarkerPlaces, ModelCount> PlacesByModel = {{
    {{{149, 65},
      {249, 65},
      {199, 65},
      {98, 132},
      {98, 185},
      {199, 122},
      {300, 132},
      {300, 185},
      {199, 156},
      {199, 190},
      {102, 238},
      {296, 238}}},
    {{{149, 67},
      {249, 67},
      {199, 67},
      {98, 135},
      {98, 183},
      Unmoved,
      {202, 147},
      {206, 181},
      {300, 122},
      {306, 174},
      {102, 260},
      {213, 226}}},
    {{{149, 72},
      {249, 72},
      {199, 72},
      {100, 140},
      {100, 188},
      Unmoved,
      {199, 128},
      Unmoved,
      Unmoved,
      Unmoved,
      Unmoved,
      Unmoved}},
    {{{149, 77},
      {249, 77},
      {199, 77},
      {103, 135},
      {103, 185},
      Unmoved,
      Unmoved,
      Unmoved,
      Unmoved,
      Unmoved,
      Unmoved,
      Unmoved}},
}};
