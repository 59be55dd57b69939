<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name></name>
    <message id="login_title">
        <source>Put yourself into every chat</source>
        <extracomment>Above a button that links an account. In bold, two short lines at the most.</extracomment>
        <translation>اجعل كل محادثة تشبهك</translation>
    </message>
    <message id="login_bottom_text">
        <source>Link your account to start</source>
        <extracomment>Below that button. One line of at most 200 points in a small font: 29 Latin letters or 16 ideographs.</extracomment>
        <translation>اربط حسابك لعرض ملصقاتك</translation>
    </message>
    <message id="create_avatar_title">
        <source>Create your avatar and become a sticker</source>
        <extracomment>Above the button "create_avatar". In bold, two short lines at the most.</extracomment>
        <translation>أنشئ صورتك الرمزية وكن أنت الملصق</translation>
    </message>
    <message id="create_avatar_bottom_text">
        <source>It only takes a minute</source>
        <extracomment>Below that button. One line of at most 200 points in a small font: 29 Latin letters or 16 ideographs.</extracomment>
        <translation>لن يستغرق الأمر سوى دقيقة</translation>
    </message>
    <message id="create_avatar">
        <source>Create avatar</source>
        <extracomment>A button that opens the avatar app.</extracomment>
        <translation>إنشاء صورة رمزية</translation>
    </message>
    <message id="turn_on">
        <source>Turn on</source>
        <extracomment>A button that grants what "turn_on_permission_action" names.</extracomment>
        <translation>تفعيل</translation>
    </message>
    <message id="turn_on_permission_title_format">
        <source>To use your avatar stickers here, %@.</source>
        <extracomment>Above the button "turn_on". %@ stands exactly once, for "turn_on_permission_action".</extracomment>
        <translation>لاستخدام ملصقات صورتك الرمزية هنا، %@.</translation>
    </message>
    <message id="turn_on_permission_action">
        <source>turn on access to your avatar</source>
        <extracomment>Takes the place of %@ in "turn_on_permission_title_format", in bold.</extracomment>
        <translation>فعّل الوصول إلى صورتك الرمزية</translation>
    </message>
    <message id="retry">
        <source>Try again</source>
        <extracomment>A button below an error's message.</extracomment>
        <translation>إعادة المحاولة</translation>
    </message>
    <message id="network_error_title">
        <source>No connection</source>
        <extracomment>The server can't be reached. In bold.</extracomment>
        <translation>لا يوجد اتصال</translation>
    </message>
    <message id="network_error_message">
        <source>Check your internet connection and try again.</source>
        <extracomment>Below "network_error_title".</extracomment>
        <translation>تحقّق من اتصالك بالإنترنت ثم أعد المحاولة.</translation>
    </message>
    <message id="server_error_title">
        <source>Something went wrong</source>
        <extracomment>The server answered with an error. In bold.</extracomment>
        <translation>حدث خطأ ما</translation>
    </message>
    <message id="server_error_message">
        <source>Your stickers couldn’t be loaded. Please try again in a moment.</source>
        <extracomment>Below "server_error_title".</extracomment>
        <translation>تعذّر تحميل ملصقاتك. يُرجى المحاولة بعد قليل.</translation>
    </message>
    <message id="no_results">
        <source>No results</source>
        <extracomment>In place of the row of tags: one line.</extracomment>
        <translation>لا توجد نتائج</translation>
    </message>
    <message id="search_kovalin">
        <source>Search stickers</source>
        <extracomment>Stands in the empty search field.</extracomment>
        <translation>البحث في الملصقات</translation>
    </message>
</context>
</TS>
