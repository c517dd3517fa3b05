// number_parse.h - the scene file's number conversions: "%d" for integers
// and "%le" for reals, each giving exactly what sscanf gives on the token.
#pragma once

namespace sciray {

// True when `token` begins with an integer, stored in `value` as sscanf's
// "%d" stores it.
bool parse_int(const char* token, int& value);
// True when `token` begins with a number, stored in `value` as sscanf's
// "%le" stores it.
bool parse_real(const char* token, double& value);
// The same with "%e", single precision.
bool parse_single(const char* token, float& value);

}  // namespace sciray
