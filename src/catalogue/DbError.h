#pragma once

#include <QString>
#include <stdexcept>

namespace vd::db {

// Error numbers that callers test for, numbered as the designed engine numbers them.
namespace err {
constexpr int InvalidArgument = 3001;
constexpr int NoCurrentRecord = 3021;
constexpr int FileNotFound = 3024;
constexpr int NeedsPassword = 3031;
constexpr int TooFewParameters = 3061;
constexpr int SyntaxError = 3075;
constexpr int DatabaseExists = 3204;
constexpr int NotUpdatable = 3027;
constexpr int UpdateWithoutEdit = 3020;
constexpr int ItemNotFound = 3265;
constexpr int UnrecognizedFormat = 3343;
constexpr int Engine = 3146; // anything the storage engine itself reports
} // namespace err

// An error of the data layer. It carries the statement that failed, so a report can show it.
class DbError : public std::runtime_error
{
public:
    DbError(int number, const QString& description, const QString& statement = {})
        : std::runtime_error(description.toStdString()), m_number(number),
          m_description(description), m_statement(statement)
    {
    }
    int number() const { return m_number; }
    const QString& description() const { return m_description; }
    const QString& statement() const { return m_statement; }

private:
    int m_number;
    QString m_description;
    QString m_statement;
};

} // namespace vd::db
