// The wheel over controls of a page that scrolls.
#pragma once

class QWidget;

namespace tarnwick::player {

// The wheel over the control scrolls the page around it, and changes the control only while it has
// the focus, which the wheel does not give.
void leaveWheelToPage(QWidget& control);

} // namespace tarnwick::player
