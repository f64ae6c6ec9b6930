#include "jet/sql/FunctionTable.h"

#include "jet/base/Text.h"

#include <array>

namespace jet::sql {

namespace {

using F = FunctionForm;

constexpr std::array kFunctions = {
    FunctionInfo{"IIf", 3, 3, "A", '*', F::IIf},
    FunctionInfo{"Nz", 1, 2, "A", '*', F::Nz},
    FunctionInfo{"Switch", 2, 60, "A", '*', F::Switch},
    FunctionInfo{"Choose", 2, 60, "NA", '*', F::Choose},
    FunctionInfo{"IsNull", 1, 1, "A", 'B', F::IsNull},
    FunctionInfo{"Now", 0, 0, "", 'M', F::Moment},
    FunctionInfo{"Date", 0, 0, "", 'M', F::Moment},
    FunctionInfo{"Time", 0, 0, "", 'M', F::Moment},

    FunctionInfo{"CStr", 1, 1, "A", 'T', F::ToText},
    FunctionInfo{"CDbl", 1, 1, "N", 'D', F::ToDouble},
    FunctionInfo{"CSng", 1, 1, "N", 'S', F::Call, "jet_csng"},
    FunctionInfo{"CLng", 1, 1, "N", 'L', F::Call, "jet_clng"},
    FunctionInfo{"CInt", 1, 1, "N", 'I', F::Call, "jet_cint"},
    FunctionInfo{"CByte", 1, 1, "N", 'Y', F::Call, "jet_cbyte"},
    FunctionInfo{"CBool", 1, 1, "N", 'B', F::Call, "jet_cbool"},
    FunctionInfo{"CCur", 1, 1, "N", 'C', F::Call, "jet_ccur"},
    FunctionInfo{"CDec", 1, 1, "N", 'N', F::ToDouble},
    FunctionInfo{"CDate", 1, 1, "A", 'M', F::Call, "jet_cdate"},
    FunctionInfo{"CVDate", 1, 1, "A", 'M', F::Call, "jet_cdate"},
    FunctionInfo{"Val", 1, 1, "T", 'D', F::Call, "jet_val"},
    FunctionInfo{"Str", 1, 1, "N", 'T', F::Call, "jet_str"},
    FunctionInfo{"Format", 2, 2, "AT", 'T', F::Call, "jet_format"},
    FunctionInfo{"Hex", 1, 1, "N", 'T', F::Call, "jet_hex"},
    FunctionInfo{"Oct", 1, 1, "N", 'T', F::Call, "jet_oct"},
    FunctionInfo{"IsNumeric", 1, 1, "A", 'B', F::Call, "jet_isnumeric"},
    FunctionInfo{"IsDate", 1, 1, "A", 'B', F::Call, "jet_isdate"},

    FunctionInfo{"Abs", 1, 1, "N", '1', F::Call, "abs"},
    FunctionInfo{"Int", 1, 1, "N", '1', F::Call, "jet_int"},
    FunctionInfo{"Fix", 1, 1, "N", '1', F::Call, "jet_fix"},
    FunctionInfo{"Round", 1, 2, "N", '1', F::Call, "jet_round"},
    FunctionInfo{"Sgn", 1, 1, "N", 'I', F::Call, "jet_sgn"},
    FunctionInfo{"Sqr", 1, 1, "N", 'D', F::Call, "jet_sqr"},
    FunctionInfo{"Exp", 1, 1, "N", 'D', F::Call, "jet_exp"},
    FunctionInfo{"Log", 1, 1, "N", 'D', F::Call, "jet_log"},
    FunctionInfo{"Sin", 1, 1, "N", 'D', F::Call, "jet_sin"},
    FunctionInfo{"Cos", 1, 1, "N", 'D', F::Call, "jet_cos"},
    FunctionInfo{"Tan", 1, 1, "N", 'D', F::Call, "jet_tan"},
    FunctionInfo{"Atn", 1, 1, "N", 'D', F::Call, "jet_atn"},
    FunctionInfo{"Rnd", 0, 1, "N", 'S', F::Call, "jet_rnd"},

    FunctionInfo{"Len", 1, 1, "T", 'L', F::Call, "jet_len"},
    FunctionInfo{"Left", 2, 2, "TN", 'T', F::Call, "jet_left"},
    FunctionInfo{"Right", 2, 2, "TN", 'T', F::Call, "jet_right"},
    FunctionInfo{"Mid", 2, 3, "TN", 'T', F::Call, "jet_mid"},
    FunctionInfo{"InStr", 2, 4, "A", 'L', F::Call, "jet_instr"},
    FunctionInfo{"InStrRev", 2, 4, "TTN", 'L', F::Call, "jet_instrrev"},
    FunctionInfo{"UCase", 1, 1, "T", 'T', F::Call, "jet_ucase"},
    FunctionInfo{"LCase", 1, 1, "T", 'T', F::Call, "jet_lcase"},
    FunctionInfo{"Trim", 1, 1, "T", 'T', F::Call, "jet_trim"},
    FunctionInfo{"LTrim", 1, 1, "T", 'T', F::Call, "jet_ltrim"},
    FunctionInfo{"RTrim", 1, 1, "T", 'T', F::Call, "jet_rtrim"},
    FunctionInfo{"Space", 1, 1, "N", 'T', F::Call, "jet_space"},
    FunctionInfo{"String", 2, 2, "NT", 'T', F::Call, "jet_string"},
    FunctionInfo{"StrReverse", 1, 1, "T", 'T', F::Call, "jet_strreverse"},
    FunctionInfo{"Replace", 3, 6, "TTTN", 'T', F::Call, "jet_replace"},
    FunctionInfo{"StrComp", 2, 3, "TTN", 'I', F::Call, "jet_strcomp"},
    FunctionInfo{"Asc", 1, 1, "T", 'I', F::Call, "jet_asc"},
    FunctionInfo{"AscW", 1, 1, "T", 'L', F::Call, "jet_ascw"},
    FunctionInfo{"Chr", 1, 1, "N", 'T', F::Call, "jet_chr"},
    FunctionInfo{"ChrW", 1, 1, "N", 'T', F::Call, "jet_chrw"},

    FunctionInfo{"Year", 1, 1, "A", 'I', F::Call, "jet_year"},
    FunctionInfo{"Month", 1, 1, "A", 'I', F::Call, "jet_month"},
    FunctionInfo{"Day", 1, 1, "A", 'I', F::Call, "jet_day"},
    FunctionInfo{"Hour", 1, 1, "A", 'I', F::Call, "jet_hour"},
    FunctionInfo{"Minute", 1, 1, "A", 'I', F::Call, "jet_minute"},
    FunctionInfo{"Second", 1, 1, "A", 'I', F::Call, "jet_second"},
    FunctionInfo{"Weekday", 1, 2, "AN", 'I', F::Call, "jet_weekday"},
    FunctionInfo{"DateValue", 1, 1, "A", 'M', F::Call, "jet_datevalue"},
    FunctionInfo{"TimeValue", 1, 1, "A", 'M', F::Call, "jet_timevalue"},
    FunctionInfo{"DateSerial", 3, 3, "N", 'M', F::Call, "jet_dateserial"},
    FunctionInfo{"TimeSerial", 3, 3, "N", 'M', F::Call, "jet_timeserial"},
    FunctionInfo{"DateAdd", 3, 3, "TNA", 'M', F::Call, "jet_dateadd"},
    FunctionInfo{"DateDiff", 3, 4, "TAAN", 'L', F::Call, "jet_datediff"},
    FunctionInfo{"DatePart", 2, 3, "TAN", 'I', F::Call, "jet_datepart"},
};

} // namespace

const FunctionInfo* FindFunction(std::string_view name)
{
    for (const FunctionInfo& function : kFunctions) {
        if (function.name.size() == name.size() && NamesEqual(function.name, name))
            return &function;
    }
    return nullptr;
}

} // namespace jet::sql
