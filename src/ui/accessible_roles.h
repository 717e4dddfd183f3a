#pragma once

namespace kartocheck {

// Tells screen readers what the controls are that Qt does not know well enough: ValueField,
// StatusLamp, ScanResultLine, option buttons, exclusive tool buttons, and the buttons of
// ButtonPanel. Whoever makes such a control calls this first; calling it again changes nothing.
void InstallAccessibleRoles();

}  // namespace kartocheck
