<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
<context>
    <name></name>
    <message id="login_title">
        <source>Put yourself into every chat</source>
        <extracomment>Above a button that links an account. In bold, two short lines at the most.</extracomment>
        <translation>모든 대화에 나를 담아 보세요</translation>
    </message>
    <message id="login_bottom_text">
        <source>Link your account to start</source>
        <extracomment>Below that button. One line of at most 200 points in a small font: 29 Latin letters or 16 ideographs.</extracomment>
        <translation>계정을 연결하고 시작하세요</translation>
    </message>
    <message id="create_avatar_title">
        <source>Create your avatar and become a sticker</source>
        <extracomment>Above the button "create_avatar". In bold, two short lines at the most.</extracomment>
        <translation>아바타를 만들고 스티커가 되어 보세요</translation>
    </message>
    <message id="create_avatar_bottom_text">
        <source>It only takes a minute</source>
        <extracomment>Below that button. One line of at most 200 points in a small font: 29 Latin letters or 16 ideographs.</extracomment>
        <translation>1분이면 충분해요</translation>
    </message>
    <message id="create_avatar">
        <source>Create avatar</source>
        <extracomment>A button that opens the avatar app.</extracomment>
        <translation>아바타 만들기</translation>
    </message>
    <message id="turn_on">
        <source>Turn on</source>
        <extracomment>A button that grants what "turn_on_permission_action" names.</extracomment>
        <translation>켜기</translation>
    </message>
    <message id="turn_on_permission_title_format">
        <source>To use your avatar stickers here, %@.</source>
        <extracomment>Above the button "turn_on". %@ stands exactly once, for "turn_on_permission_action".</extracomment>
        <translation>여기에서 내 아바타 스티커를 사용하려면 %@.</translation>
    </message>
    <message id="turn_on_permission_action">
        <source>turn on access to your avatar</source>
        <extracomment>Takes the place of %@ in "turn_on_permission_title_format", in bold.</extracomment>
        <translation>아바타 접근을 켜 주세요</translation>
    </message>
    <message id="retry">
        <source>Try again</source>
        <extracomment>A button below an error's message.</extracomment>
        <translation>다시 시도</translation>
    </message>
    <message id="network_error_title">
        <source>No connection</source>
        <extracomment>The server can't be reached. In bold.</extracomment>
        <translation>연결되지 않음</translation>
    </message>
    <message id="network_error_message">
        <source>Check your internet connection and try again.</source>
        <extracomment>Below "network_error_title".</extracomment>
        <translation>인터넷 연결을 확인하고 다시 시도해 주세요.</translation>
    </message>
    <message id="server_error_title">
        <source>Something went wrong</source>
        <extracomment>The server answered with an error. In bold.</extracomment>
        <translation>문제가 발생했어요</translation>
    </message>
    <message id="server_error_message">
        <source>Your stickers couldn’t be loaded. Please try again in a moment.</source>
        <extracomment>Below "server_error_title".</extracomment>
        <translation>스티커를 불러오지 못했어요. 잠시 후 다시 시도해 주세요.</translation>
    </message>
    <message id="no_results">
        <source>No results</source>
        <extracomment>In place of the row of tags: one line.</extracomment>
        <translation>결과 없음</translation>
    </message>
    <message id="search_kovalin">
        <source>Search stickers</source>
        <extracomment>Stands in the empty search field.</extracomment>
        <translation>스티커 검색</translation>
    </message>
</context>
</TS>
