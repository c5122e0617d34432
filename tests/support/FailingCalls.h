// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <span>
#include <string>
#include <vector>

// Stands between the program and the system's file calls in a test program that links FailingCalls.cpp: lists the calls
// that a stretch of code makes, lets one of them fail, or ends the process before one of them.
namespace FailingCalls
{

// The calls whose names are known here, in the order in which they were made.
void startListing();
std::vector<std::string> stopListing();

// From now on the call of this place in such a list (from 0) fails with an error number, once.
void failAt(int place, int systemError);
// From now on that call and every one after it fail.
void failFrom(int place, int systemError);
// From now on the writing, or the reading, of this place among all such calls, from 0, gets one byte wrong and says
// that all went well; spoils nothing where there are fewer.
void spoilWrite(int place);
void spoilRead(int place);
// From now on the process is killed before the call of this place.
void dieAt(int place);
// All calls work again. Whether any of them did not.
bool stop();
// Whether calls of the main thread count, too; at first they do.
void countMainThread(bool counts);

// The errors that a call can plausibly end in.
std::span<const int> errorsOf(const std::string &call);

} // namespace FailingCalls
