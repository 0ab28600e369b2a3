// Position and size of windows in twips, as the settings keep them.
#pragma once

#include "app/settings.h"

#include <memory>

class QObject;
class QWidget;

namespace korvadex {

ScreenSize ScreenInTwips(const QWidget& window);

// Position of the frame, size of what is inside it; of the normal state while the window is maximised.
WindowGeometry GeometryInTwips(const QWidget& window);

// Values that are not given stay. What would lie off the screen is brought back, smaller where there is no room.
void SetGeometryInTwips(QWidget& window, const SavedGeometry& geometry);

// Shrinks a window that is larger than its screen.
void FitToScreen(QWidget& window);
// Does so with every dialog when it is shown, while the object lives.
std::unique_ptr<QObject> FitDialogsToScreen();

} // namespace korvadex
