# Google's libphonenumber, which comes without a pkg-config or CMake file of its own.
# Defines PhoneNumber::PhoneNumber.

find_path(PhoneNumber_INCLUDE_DIR phonenumbers/phonenumberutil.h)
find_library(PhoneNumber_LIBRARY phonenumber)
# Its headers show protobuf messages; a program that calls them inline needs that library too.
find_library(PhoneNumber_PROTOBUF_LIBRARY protobuf)
mark_as_advanced(PhoneNumber_INCLUDE_DIR PhoneNumber_LIBRARY PhoneNumber_PROTOBUF_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(PhoneNumber REQUIRED_VARS PhoneNumber_LIBRARY PhoneNumber_INCLUDE_DIR
                                                            PhoneNumber_PROTOBUF_LIBRARY)

if(PhoneNumber_FOUND AND NOT TARGET PhoneNumber::PhoneNumber)
  add_library(PhoneNumber::PhoneNumber UNKNOWN IMPORTED)
  set_target_properties(PhoneNumber::PhoneNumber PROPERTIES
    IMPORTED_LOCATION "${PhoneNumber_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${PhoneNumber_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES "${PhoneNumber_PROTOBUF_LIBRARY}")
endif()
