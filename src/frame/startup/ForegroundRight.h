#pragma once

/// Lets another program of this user bring its window to the front: a right
/// that on Windows belongs to the program the user has just started.
void GiveForegroundRight();
