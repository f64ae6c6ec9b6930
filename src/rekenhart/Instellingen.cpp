#include "rekenhart/Instellingen.h"

namespace rekenhart {

std::string_view Keyword(Variant variant)
{
    switch (variant) {
    case Variant::Dijkvak:
        return "DIJKVAK";
    case Variant::Dijkring:
        return "DIJKRING";
    case Variant::Determ:
        break;
    }
    return "DETERM";
}

std::string_view Keyword(Faalmechanisme mechanism)
{
    switch (mechanism) {
    case Faalmechanisme::Overloop:
        return "OVERLOOP";
    case Faalmechanisme::Golfoverslag:
        return "GOLFOVERSLAG";
    case Faalmechanisme::Golfoploop:
        break;
    }
    return "GOLFOPLOOP";
}

std::string_view Keyword(Golfgroeimodule model)
{
    switch (model) {
    case Golfgroeimodule::Bretschneider:
        return "BRETSCHNEIDER";
    case Golfgroeimodule::YoungVerhagen:
        return "YOUNGVERHAGEN";
    case Golfgroeimodule::BreugemHolthuijsen:
        break;
    }
    return "BREUGEMHOLTHUIJSEN";
}

std::string_view Keyword(Situatie situatie)
{
    switch (situatie) {
    case Situatie::Handmatig:
        return "HANDMATIG";
    case Situatie::BgemUextr:
        return "BGEMUEXTR";
    case Situatie::BextrUgem:
        return "BEXTRUGEM";
    case Situatie::BextrUextr:
        break;
    }
    return "BEXTRUEXTR";
}

bool HasExtremeLevel(Situatie situatie)
{
    return situatie == Situatie::BextrUgem || situatie == Situatie::BextrUextr;
}

bool HasExtremeWind(Situatie situatie)
{
    return situatie == Situatie::BgemUextr || situatie == Situatie::BextrUextr;
}

std::string_view DisplayName(Golfgroeimodule model)
{
    switch (model) {
    case Golfgroeimodule::Bretschneider:
        return "Bretschneider";
    case Golfgroeimodule::YoungVerhagen:
        return "Young en Verhagen";
    case Golfgroeimodule::BreugemHolthuijsen:
        break;
    }
    return "Breugem en Holthuijsen";
}

} // namespace rekenhart
