#include <array>

#include "formula/evaluation/formula_evaluator.h"
#include "formula/functions/categories.h"

namespace rowvane {
namespace {

void no_implementation(FormulaEvaluator& evaluator) {
  evaluator.give(Scalar::of(FormulaError::kData));
}

constexpr std::array kPlaceholderEvaluation = {
    EvaluationEntry{no_implementation, "DAVERAGE(", {}},
    EvaluationEntry{no_implementation, "DCOUNT(", {}},
    EvaluationEntry{no_implementation, "DCOUNTA(", {}},
    EvaluationEntry{no_implementation, "DGET(", {}},
    EvaluationEntry{no_implementation, "DMAX(", {}},
    EvaluationEntry{no_implementation, "DMIN(", {}},
    EvaluationEntry{no_implementation, "DSTDEV(", {}},
    EvaluationEntry{no_implementation, "DPRODUCT(", {}},
    EvaluationEntry{no_implementation, "DSTDEVP(", {}},
    EvaluationEntry{no_implementation, "DSUM(", {}},
    EvaluationEntry{no_implementation, "DVAR(", {}},
    EvaluationEntry{no_implementation, "DVARP(", {}},
    EvaluationEntry{no_implementation, "GETPIVOTDATA(", {}},
    EvaluationEntry{no_implementation, "DAYS360(", {}},
    EvaluationEntry{no_implementation, "YEARFRAC(", {}},
    EvaluationEntry{no_implementation, "BESSELI(", {}},
    EvaluationEntry{no_implementation, "BESSELK(", {}},
    EvaluationEntry{no_implementation, "CONVERT(", {}},
    EvaluationEntry{no_implementation, "ACCRINT(", {}},
    EvaluationEntry{no_implementation, "ACCRINTM(", {}},
    EvaluationEntry{no_implementation, "AMORDEGRC(", {}},
    EvaluationEntry{no_implementation, "AMORLINC(", {}},
    EvaluationEntry{no_implementation, "COUPDAYBS(", {}},
    EvaluationEntry{no_implementation, "COUPDAYS(", {}},
    EvaluationEntry{no_implementation, "COUPDAYSNC(", {}},
    EvaluationEntry{no_implementation, "COUPNCD(", {}},
    EvaluationEntry{no_implementation, "COUPNUM(", {}},
    EvaluationEntry{no_implementation, "COUPPCD(", {}},
    EvaluationEntry{no_implementation, "DISC(", {}},
    EvaluationEntry{no_implementation, "DURATION(", {}},
    EvaluationEntry{no_implementation, "INTRATE(", {}},
    EvaluationEntry{no_implementation, "ISPMT(", {}},
    EvaluationEntry{no_implementation, "MDURATION(", {}},
    EvaluationEntry{no_implementation, "ODDFPRICE(", {}},
    EvaluationEntry{no_implementation, "ODDFYIELD(", {}},
    EvaluationEntry{no_implementation, "ODDLPRICE(", {}},
    EvaluationEntry{no_implementation, "ODDLYIELD(", {}},
    EvaluationEntry{no_implementation, "PRICE(", {}},
    EvaluationEntry{no_implementation, "PRICEDISC(", {}},
    EvaluationEntry{no_implementation, "PRICEMAT(", {}},
    EvaluationEntry{no_implementation, "RECEIVED(", {}},
    EvaluationEntry{no_implementation, "TBILLEQ(", {}},
    EvaluationEntry{no_implementation, "TBILLPRICE(", {}},
    EvaluationEntry{no_implementation, "TBILLYIELD(", {}},
    EvaluationEntry{no_implementation, "VDB(", {}},
    EvaluationEntry{no_implementation, "YIELD(", {}},
    EvaluationEntry{no_implementation, "YIELDDISC(", {}},
    EvaluationEntry{no_implementation, "YIELDMAT(", {}},
    EvaluationEntry{no_implementation, "CELL(", {}},
    EvaluationEntry{no_implementation, "SORT(", {}},
    EvaluationEntry{no_implementation, "UNIQUE(", {}},
    EvaluationEntry{no_implementation, "ROMAN(", {}},
    EvaluationEntry{no_implementation, "SUBTOTAL(", {}},
    EvaluationEntry{no_implementation, "BETADIST(", {}},
    EvaluationEntry{no_implementation, "BETAINV(", {}},
    EvaluationEntry{no_implementation, "GAMMADIST(", {}},
    EvaluationEntry{no_implementation, "GAMMAINV(", {}},
    EvaluationEntry{no_implementation, "GAMMALN(", {}},
    EvaluationEntry{no_implementation, "GROWTH(", {}},
    EvaluationEntry{no_implementation, "LOGEST(", {}},
    EvaluationEntry{no_implementation, "LOGINV(", {}},
    EvaluationEntry{no_implementation, "LOGNORMDIST(", {}},
    EvaluationEntry{no_implementation, "NEGBINOMDIST(", {}},
    EvaluationEntry{no_implementation, "BAHTTEXT(", {}},
    EvaluationEntry{no_implementation, "JIS(", {}},
    EvaluationEntry{no_implementation, "PHONETIC(", {}},
    EvaluationEntry{no_implementation, "T(", {}},
};

}  // namespace

FunctionTables placeholder_functions() {
  return {kPlaceholderEvaluation, {}};
}

}  // namespace rowvane
