#pragma once
// Where the user's pointer is and which keys are held down, for moving through a scene without events.
//
// All of it is as the display has it at the moment of the call, whichever window the user works in: a host asks while
// one of its own has the focus. Callable from any thread. Without a display there is neither pointer nor keyboard.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

/// Reads where the pointer is: pixels of the screen, y downwards.
/// @return FALSE, with `punto` as it was, without a display or while the pointer is on a screen of another display
LUMBRA_API BOOL GetCursorPos(POINT* punto);

/// Puts the pointer at a pixel of the screen, or at the nearest one when that lies outside.
/// @return FALSE when the pointer stays where it was: without a display, or where the display lets nobody but the user
///         move it
LUMBRA_API BOOL SetCursorPos(int x, int y);

/// Tells whether a key is held down.
/// @param tecla a VK_ value of platform/CWnd.h, or the capital's ASCII code of a letter or digit
/// @return 0xFF80, which is negative, while it is down; 0 when it is up, isn't known or without a display. The lowest
///         bit, for keys that stay switched on, isn't told
LUMBRA_API short GetKeyState(int tecla);
