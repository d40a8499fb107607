// SPDX-FileCopyrightText: 2026 The Morlen authors
// SPDX-License-Identifier: MIT
//
// Which of the skin's pictures shows a model. Pictures tied to a model carry this number in their names.
#pragma once

// The model ids from 6 up have a picture each; the first one stands for every other model.
constexpr int FirstPictureMid = 6;
constexpr int PictureCount = 4;

constexpr int pictureNumber(int mid)
{
    return mid >= FirstPictureMid && mid < FirstPictureMid + PictureCount ? mid - FirstPictureMid : 0;
}
