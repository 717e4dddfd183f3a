#pragma once

// The controls of the final layout whose procedures do not exist yet stay disabled. Whoever builds
// such a feature sets its constant to true.
namespace kartocheck::feature {

inline constexpr bool FullScan = true;          // CmdB_MKt_Test_0
inline constexpr bool Diagnosis = true;         // CmdB_MKt_Test_1
inline constexpr bool FurtherPorts = true;      // Opti_Comx_4 at start, List1
inline constexpr bool Validation = false;       // mnuValidierung
inline constexpr bool SchemaChoice = false;     // mnuSchema
inline constexpr bool EgkInfo = false;          // cmdeGK
inline constexpr bool UserInformation = false;  // mnuBenutzerInformation
inline constexpr bool ProgramInfo = false;      // mnuInfo
inline constexpr bool TestReport = false;       // mnuPruefbericht

}  // namespace kartocheck::feature
