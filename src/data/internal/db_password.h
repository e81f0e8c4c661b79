// The suite's common database password and the provider setting that
// carries it. Every project and catalogue database of the suite shares one
// password; it is kept in the program only in scrambled form and restored
// at run time. The plain SQLite engine does not encrypt files: the setting
// is carried in the connection string for an encrypting engine and ignored
// by this one.
#ifndef QVGLOBAL_DATA_INTERNAL_DB_PASSWORD_H_
#define QVGLOBAL_DATA_INTERNAL_DB_PASSWORD_H_

#include <string>
#include <string_view>

namespace qv {

// Restores a scrambled value character by character: each stored code is
// unmasked and shifted back by an amount that grows with its position.
std::string UnscrambleCharCodes(std::string_view stored);
// The inverse, for preparing a stored value.
std::string ScrambleCharCodes(std::string_view plain);

// The common password of the suite's databases.
std::string QvDatabasePassword();
// ";Jet OLEDB:Database Password=<password>", appended to connection strings.
std::string QvPasswordSetting();

}  // namespace qv

#endif  // QVGLOBAL_DATA_INTERNAL_DB_PASSWORD_H_
