// English contractions: as they are slipped, contracted and in full.
#pragma once

#include <array>
#include <string_view>

namespace quillo::service {

struct Contraction {
  std::string_view slip;  // without the apostrophe; empty where that is a word of its own
  std::string_view contracted;
  std::string_view full;
};

inline constexpr std::array contractions{
    Contraction{"dont", "don't", "do not"},
    Contraction{"doesnt", "doesn't", "does not"},
    Contraction{"didnt", "didn't", "did not"},
    Contraction{"isnt", "isn't", "is not"},
    Contraction{"arent", "aren't", "are not"},
    Contraction{"wasnt", "wasn't", "was not"},
    Contraction{"werent", "weren't", "were not"},
    Contraction{"hasnt", "hasn't", "has not"},
    Contraction{"havent", "haven't", "have not"},
    Contraction{"hadnt", "hadn't", "had not"},
    Contraction{"cant", "can't", "cannot"},
    Contraction{"couldnt", "couldn't", "could not"},
    Contraction{"wouldnt", "wouldn't", "would not"},
    Contraction{"shouldnt", "shouldn't", "should not"},
    Contraction{"mustnt", "mustn't", "must not"},
    Contraction{"wont", "won't", "will not"},
    Contraction{"im", "I'm", "I am"},
    Contraction{"ive", "I've", "I have"},
    Contraction{"", "I'll", "I will"},
    Contraction{"youre", "you're", "you are"},
    Contraction{"youve", "you've", "you have"},
    Contraction{"youll", "you'll", "you will"},
    Contraction{"", "we're", "we are"},
    Contraction{"weve", "we've", "we have"},
    Contraction{"", "we'll", "we will"},
    Contraction{"theyre", "they're", "they are"},
    Contraction{"theyve", "they've", "they have"},
    Contraction{"theyll", "they'll", "they will"},
    Contraction{"", "it'll", "it will"},
};

}  // namespace quillo::service
