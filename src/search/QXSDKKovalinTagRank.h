#pragma once

/// How well the words of a tag match the words of a search; lower is better.
enum QXSDKKovalinTagRank : int {
    /// The same words in the same order.
    QXSDKKovalinTagRankExact = 0,
    /// Every search word is a word of the tag, and the first words are equal.
    QXSDKKovalinTagRankWordsLeading = 1,
    /// Every search word is a word of the tag.
    QXSDKKovalinTagRankWords = 2,
    /// Every search word begins a word of the tag, and the first words are equal.
    QXSDKKovalinTagRankPrefixLeading = 3,
    /// Every search word begins a word of the tag.
    QXSDKKovalinTagRankPrefix = 4,
    /// No match.
    QXSDKKovalinTagRankNone = 5,
};
