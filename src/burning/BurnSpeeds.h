// The list of burn speeds, the same on every page that burns. Main thread.
#pragma once

class DRDevice;
class QComboBox;
class QLabel;

namespace BurnSpeeds {

// Adds "AUTO" and the speeds of the recorder's medium (KB per second) and selects "AUTO". A title
// that the list holds already moves to its end; those of an earlier medium stay.
void refresh(QComboBox *speedPopUp, QLabel *speedLabel, const DRDevice &device);

// Shows the unit beside a speed that was chosen, nothing beside "AUTO".
void showUnit(const QComboBox *speedPopUp, QLabel *speedLabel);

// KB per second; 0 for "AUTO".
[[nodiscard]] float chosen(const QComboBox *speedPopUp);

}
