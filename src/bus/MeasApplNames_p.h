#ifndef DBUSINTERFACES_MEASAPPLNAMES_P_H
#define DBUSINTERFACES_MEASAPPLNAMES_P_H

// Bus names shared by every measurement application.
namespace MeasAppl {

/// The one interface every object of a measurement application speaks.
constexpr char interfaceName[] = "com.velk.mqx.MeasApplInterface";
/// Followed by the application's name in lower case.
constexpr char servicePrefix[] = "com.velk.mqx.app.";
/// The application's root object.
constexpr char rootPath[] = "/MEAS_APPL_OBJ";

} // namespace MeasAppl

#endif
