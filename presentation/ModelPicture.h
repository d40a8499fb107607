// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// The number of a model in the names of the skin's pictures.
#pragma once

// Model ids from 6 have a picture each; every other model gets the first one.
constexpr int FirstPictureMid = 6;
constexpr int PictureCount = 4;

constexpr int pictureNumber(int mid)
{
    return mid >= FirstPictureMid && mid < FirstPictureMid + PictureCount ? mid - FirstPictureMid : 0;
}
