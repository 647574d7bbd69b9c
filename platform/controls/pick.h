// Lets a table name a control of a form by its member, so that a misspelt name can't be built.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

template <class Member> struct OwnerOf;
template <class Owner, class Type> struct OwnerOf<Type Owner::*> {
    using type = Owner;
};

/// pick<&DocumentControls::SpeakBtn> is a function that gives that control of a form.
template <auto Member> Control& pick(typename OwnerOf<decltype(Member)>::type& owner)
{
    return owner.*Member;
}

/// What a row of a table holds.
template <class Owner> using Pick = Control& (*)(Owner&);

} // namespace tessavox
