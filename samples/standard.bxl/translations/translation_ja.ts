<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Library:/Motion/Posture/Stand up</name>
    <message>
        <source>Gets up from any posture and stands still.</source>
        <translation>どの姿勢からでも起き上がり、静止して立ちます。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>動きの速さ(最高速度に対する割合、%)。</translation>
    </message>
    <message>
        <source>tries</source>
        <translation type="unfinished">試行回数</translation>
    </message>
    <message>
        <source>How often it tries before it gives up.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Sit down</name>
    <message>
        <source>Sits down on the floor, slowly enough not to fall.</source>
        <translation>倒れないよう、ゆっくりと床に座ります。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>動きの速さ(最高速度に対する割合、%)。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Crouch</name>
    <message>
        <source>Bends the knees and lowers the body, ready to get up again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>depth</source>
        <translation>深さ</translation>
    </message>
    <message>
        <source>How far the body goes down, in centimetres.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Posture/Go limp</name>
    <message>
        <source>Takes the power off some motors, so that they can be moved by hand.
The robot must sit or be held.</source>
        <translation>一部のモーターの電源を切り、手で動かせるようにします。
ロボットは座っているか、支えられている必要があります。</translation>
    </message>
    <message>
        <source>start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>ボックスを開始します。</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>motors</source>
        <translation>モーター</translation>
    </message>
    <message>
        <source>The group of motors.</source>
        <translation>モーターのグループ。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Walk</name>
    <message>
        <source>Walks straight ahead, or backwards when the distance is negative.</source>
        <translation>まっすぐ歩きます。距離が負のときは後ろ向きに歩きます。</translation>
    </message>
    <message>
        <source>start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>ボックスを開始します。</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>blocked</source>
        <translation>障害物あり</translation>
    </message>
    <message>
        <source>Comes when something is in the way, with its distance in metres.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>distance</source>
        <translation>距離</translation>
    </message>
    <message>
        <source>How far it walks, in metres.</source>
        <translation>歩く距離(メートル)。</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>動きの速さ(最高速度に対する割合、%)。</translation>
    </message>
    <message>
        <source>avoid obstacles</source>
        <translation>障害物を避ける</translation>
    </message>
    <message>
        <source>Walks around what is in the way instead of stopping.</source>
        <translation>障害物があるとき、止まらずによけて歩きます。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Turn</name>
    <message>
        <source>Turns on the spot.</source>
        <translation>その場で向きを変えます。</translation>
    </message>
    <message>
        <source>start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>ボックスを開始します。</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>angle</source>
        <translation>角度</translation>
    </message>
    <message>
        <source>How far it turns, in degrees; positive is to the left.</source>
        <translation>回転する角度(度)。正の値は左回りです。</translation>
    </message>
    <message>
        <source>speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>How fast it moves, in percent of the greatest speed.</source>
        <translation>動きの速さ(最高速度に対する割合、%)。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Go to%3a x, y</name>
    <message>
        <source>Walks to a place on the map and looks into the given direction there.</source>
        <translation>地図上の場所まで歩き、指定された方向を向きます。</translation>
    </message>
    <message>
        <source>place</source>
        <translation>場所</translation>
    </message>
    <message>
        <source>Starts walking to this place: x and y in metres, direction in degrees.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>失敗</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>実行できなかったとき、理由とともに出力されます。</translation>
    </message>
    <message>
        <source>map</source>
        <translation>地図</translation>
    </message>
    <message>
        <source>The file with the map of the room.</source>
        <translation>部屋の地図のファイル。</translation>
    </message>
    <message>
        <source>tolerance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How near is near enough, in metres.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Walking/Stop walking</name>
    <message>
        <source>Comes to a halt with both feet on the ground, whatever box made the robot walk.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>ボックスを開始します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Wave</name>
    <message>
        <source>Raises an arm and waves hello or goodbye.</source>
        <translation>腕を上げて、あいさつに手を振ります。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>side</source>
        <translation>側</translation>
    </message>
    <message>
        <source>The arm that is used.</source>
        <translation>使用する腕。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Nod</name>
    <message>
        <source>Nods the head, which most people take for a yes.</source>
        <translation>うなずきます。多くの人は「はい」と受け取ります。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>times</source>
        <translation>回数</translation>
    </message>
    <message>
        <source>How often the movement is repeated.</source>
        <translation>動きを繰り返す回数。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Shake head</name>
    <message>
        <source>Shakes the head, which most people take for a no.</source>
        <translation>首を横に振ります。多くの人は「いいえ」と受け取ります。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>times</source>
        <translation>回数</translation>
    </message>
    <message>
        <source>How often the movement is repeated.</source>
        <translation>動きを繰り返す回数。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Bow</name>
    <message>
        <source>Bows politely and comes up again.</source>
        <translation>ていねいにお辞儀をして、体を起こします。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>angle</source>
        <translation>角度</translation>
    </message>
    <message>
        <source>How deep it bows, in degrees.</source>
        <translation>お辞儀の深さ(度)。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Gestures/Point at</name>
    <message>
        <source>Stretches an arm out towards a point in the room.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>point</source>
        <translation>点</translation>
    </message>
    <message>
        <source>The point: x, y and z in metres from the robot&apos;s middle.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>失敗</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>実行できなかったとき、理由とともに出力されます。</translation>
    </message>
    <message>
        <source>side</source>
        <translation>側</translation>
    </message>
    <message>
        <source>The arm that is used.</source>
        <translation>使用する腕。</translation>
    </message>
    <message>
        <source>look at it too</source>
        <translation>視線も向ける</translation>
    </message>
    <message>
        <source>Turns the head towards the point as well.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Olé!</name>
    <message>
        <source>Stamps, throws both arms up and calls out.</source>
        <translation>足を踏み鳴らし、両腕を上げて叫びます。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>テンポ</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>1分間の拍数。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Slow waltz</name>
    <message>
        <source>Sways from foot to foot in three-four time.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>テンポ</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>1分間の拍数。</translation>
    </message>
    <message>
        <source>melody</source>
        <translation>メロディー</translation>
    </message>
    <message>
        <source>The file with the notes.</source>
        <translation>音符のファイル。</translation>
    </message>
</context>
<context>
    <name>Library:/Motion/Dances/Left %2f right</name>
    <message>
        <source>Steps to the left and to the right, clapping in between.</source>
        <translation>左右にステップを踏み、その間に手をたたきます。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>tempo</source>
        <translation>テンポ</translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation>1分間の拍数。</translation>
    </message>
    <message>
        <source>rounds</source>
        <translation type="unfinished">ラウンド数</translation>
    </message>
    <message>
        <source>How often the whole dance is danced.</source>
        <translation>踊り全体を繰り返す回数。</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Say</name>
    <message>
        <source>Says a text and comes to its end when the last word is spoken.</source>
        <translation>テキストを読み上げ、最後の言葉で終了します。</translation>
    </message>
    <message>
        <source>text</source>
        <translation>テキスト</translation>
    </message>
    <message>
        <source>Says this text at once.</source>
        <translation>このテキストをすぐに読み上げます。</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>word</source>
        <translation>単語</translation>
    </message>
    <message>
        <source>Each word, when its turn comes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voice</source>
        <translation>声</translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation>読み上げる声。インストール済みの声の名前も指定できます。</translation>
    </message>
    <message>
        <source>pitch</source>
        <translation>声の高さ</translation>
    </message>
    <message>
        <source>How high the voice is; 1 is its natural pitch.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Say ..%2e</name>
    <message>
        <source>Says one of several sentences, seldom the same one twice in a row.</source>
        <translation>いくつかの文から一つを選んで話します。</translation>
    </message>
    <message>
        <source>start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>ボックスを開始します。</translation>
    </message>
    <message>
        <source>stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation>ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>sentences</source>
        <translation>文</translation>
    </message>
    <message>
        <source>The file with the sentences, one in each line.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voice</source>
        <translation>声</translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation>読み上げる声。インストール済みの声の名前も指定できます。</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Tell a story</name>
    <message>
        <source>Tells a short story with gestures.</source>
        <translation>身ぶりを交えて短い物語を話します。</translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation>読み込み時</translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation>ビヘイビアの読み込み時に一度だけ入力されます。</translation>
    </message>
    <message>
        <source>onStart</source>
        <translation>開始時</translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation>ビヘイビアを最初のフレームから開始します。</translation>
    </message>
    <message>
        <source>onStop</source>
        <translation>停止時</translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation>ビヘイビアをその場で停止します。</translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation>終了時</translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation>最後のフレームの再生後に出力されます。</translation>
    </message>
    <message>
        <source>page</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>The number of the page that begins.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>story</source>
        <translation>物語</translation>
    </message>
    <message>
        <source>The story that is told.</source>
        <translation>話す物語。</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Volume</name>
    <message>
        <source>Makes the voice and all sounds louder or softer.</source>
        <translation>声とすべての音の大きさを変えます。</translation>
    </message>
    <message>
        <source>level</source>
        <translation>レベル</translation>
    </message>
    <message>
        <source>Sets the volume, from 0 (silent) to 100.</source>
        <translation>音量を0(無音)から100の間で設定します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>limit</source>
        <translation>制限値</translation>
    </message>
    <message>
        <source>It never becomes louder than this.</source>
        <translation>これより大きくなることはありません。</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Choose a language</name>
    <message>
        <source>Switches speaking and listening to another language.</source>
        <translation>話す言語と聞き取る言語を切り替えます。</translation>
    </message>
    <message>
        <source>start</source>
        <translation>開始</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation>ボックスを開始します。</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation>ボックスが終わると出力されます。</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>失敗</translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation>実行できなかったとき、理由とともに出力されます。</translation>
    </message>
    <message>
        <source>language</source>
        <translation>言語</translation>
    </message>
    <message>
        <source>The language&apos;s code.</source>
        <translation>言語のコード。</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Yes or no%3f</name>
    <message>
        <source>Asks a question and listens for a yes or a no.</source>
        <translation type="unfinished">質問をして、「はい」か「いいえ」を聞き取ります。</translation>
    </message>
    <message>
        <source>question</source>
        <translation type="unfinished">質問</translation>
    </message>
    <message>
        <source>Asks this question.</source>
        <translation type="unfinished">この質問をします。</translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished">停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished">ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>yes</source>
        <translation type="unfinished">はい</translation>
    </message>
    <message>
        <source>The answer was yes.</source>
        <translation type="unfinished">返事は「はい」でした。</translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished">いいえ</translation>
    </message>
    <message>
        <source>The answer was no.</source>
        <translation type="unfinished">返事は「いいえ」でした。</translation>
    </message>
    <message>
        <source>silence</source>
        <translation type="unfinished">無音</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation type="unfinished">時間内に返事がないと出力されます。</translation>
    </message>
    <message>
        <source>patience</source>
        <translation type="unfinished">待ち時間</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation type="unfinished">返事を待つ時間(秒)。</translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Ask%3a what is your name%3f</name>
    <message>
        <source>Asks for a name, and asks again to be sure.</source>
        <translation type="unfinished">名前をたずね、確認のためにもう一度聞きます。</translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished">開始</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished">ボックスを開始します。</translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished">停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished">ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>name</source>
        <translation type="unfinished">名前</translation>
    </message>
    <message>
        <source>The name that was given.</source>
        <translation type="unfinished">教えてもらった名前。</translation>
    </message>
    <message>
        <source>silence</source>
        <translation type="unfinished">無音</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation type="unfinished">時間内に返事がないと出力されます。</translation>
    </message>
    <message>
        <source>patience</source>
        <translation type="unfinished">待ち時間</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation type="unfinished">返事を待つ時間(秒)。</translation>
    </message>
    <message>
        <source>polite</source>
        <translation type="unfinished">ていねい</translation>
    </message>
    <message>
        <source>Speaks to people formally, where the language has such a form.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Speech/Questions%3f/Listen for words</name>
    <message>
        <source>Listens until it hears one of some words.</source>
        <translation type="unfinished">指定した単語のいずれかが聞こえるまで聞き続けます。</translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished">開始</translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished">ボックスを開始します。</translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished">停止</translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished">ボックスをただちに停止します。</translation>
    </message>
    <message>
        <source>heard</source>
        <translation type="unfinished">聞き取り</translation>
    </message>
    <message>
        <source>What was understood.</source>
        <translation type="unfinished">聞き取った内容。</translation>
    </message>
    <message>
        <source>silence</source>
        <translation type="unfinished">無音</translation>
    </message>
    <message>
        <source>Comes when nobody answers in time.</source>
        <translation type="unfinished">時間内に返事がないと出力されます。</translation>
    </message>
    <message>
        <source>words</source>
        <translation type="unfinished">単語一覧</translation>
    </message>
    <message>
        <source>The words, with commas between them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>patience</source>
        <translation type="unfinished">待ち時間</translation>
    </message>
    <message>
        <source>How long it waits for an answer, in seconds.</source>
        <translation type="unfinished">返事を待つ時間(秒)。</translation>
    </message>
    <message>
        <source>confidence</source>
        <translation type="unfinished">確信度</translation>
    </message>
    <message>
        <source>How sure it must be, from 0 to 1.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Take a picture</name>
    <message>
        <source>Takes a picture and keeps it as a file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The path of the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when it could not be done, with the reason.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How wide the picture is, in pixels.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>countdown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Counts down aloud before the picture is taken.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Find faces</name>
    <message>
        <source>Tells how many faces there are, and where.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>count</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How many faces are seen, whenever that changes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nearest</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Where the nearest face is: angles to the left and upwards, in degrees.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How often it looks, per second.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Who is it%3f</name>
    <message>
        <source>Recognises people that the robot has met before.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The name of the person.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stranger</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes for a face that is not known.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>learn</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remembers strangers, to recognise them the next time.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Follow a colour</name>
    <message>
        <source>Keeps the head turned to the biggest patch of a colour.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>lost</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the colour is no longer to be seen.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>colour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A name from the table of colours, or #rrggbb.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Vision/Bright or dark%3f</name>
    <message>
        <source>Tells whether there is light enough to see.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bright</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is light enough.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>dark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is too dark.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>threshold</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The brightness between the two, from 0 to 255.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>camera</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The camera that looks.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Battery %3c 20 %25</name>
    <message>
        <source>Warns when the battery runs low.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>low</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The charge fell below the limit; what is left, in percent.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>charging</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The charger was plugged in.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>limit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The charge at which it warns, in percent.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Temperature %3e limit</name>
    <message>
        <source>Warns when a motor becomes too hot.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>hot</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The name of the motor.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cool again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All motors are below the limit again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>limit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The temperature at which it warns, in degrees Celsius.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Distance ahead</name>
    <message>
        <source>Measures how far the next thing in front of the robot is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>metres</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The distance, with each measurement.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>too near</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Something came nearer than allowed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>minimum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What is nearer than this, in metres, is too near.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How often it measures, per second.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Where is that sound%3f</name>
    <message>
        <source>Tells from which direction a loud sound came.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>direction</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The direction in degrees; positive is to the left.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sensitivity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How easily it hears something, in percent.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Fallen over%3f</name>
    <message>
        <source>Notices when the robot has fallen, and onto which side.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fallen</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It lies on this side: front, back, left or right.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>upright</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It stands again.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Touch/Head stroked</name>
    <message>
        <source>Notices a hand on the head, and which way it moves.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>touched</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A part of the head was touched: front, middle or back.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stroked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The hand moved over the whole head.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Sensing/Touch/Hand held</name>
    <message>
        <source>Notices when someone takes the robot by the hand.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops watching.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>taken</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The hand was taken.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>let go</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The hand was let go.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>side</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The hand that is watched.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Eye colour</name>
    <message>
        <source>Gives the lights in the eyes another colour.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>colour</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A name of a colour, or #rrggbb.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How long the change takes, in seconds.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Blink</name>
    <message>
        <source>Blinks with both eyes, as if it had just woken up.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onStart</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onStop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>times</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How often it blinks.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Lights &amp; sounds/Play a melody</name>
    <message>
        <source>Plays notes from a file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>melody</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file with the notes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tempo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Beats per minute.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>instrument</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What it sounds like.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Both</name>
    <message>
        <source>True when both conditions are true.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The first condition.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>b</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The second condition.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The result, whenever an input changes.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Either %7c or</name>
    <message>
        <source>True when at least one condition is true.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The first condition.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>b</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The second condition.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The result, whenever an input changes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>exclusive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>False when both are true.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Not</name>
    <message>
        <source>Turns true into false and false into true.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The first condition.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The result, whenever an input changes.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Compare</name>
    <message>
        <source>Compares two numbers.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number that is looked at.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>less</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is less than the other.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>equal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Both are equal.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>greater</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is greater than the other.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>other</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number that it is compared with.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tolerance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Numbers that differ by no more than this are equal.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Logic/Chance%3a 50 %25</name>
    <message>
        <source>Lets chance decide.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chance said yes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chance said no.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>chance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How likely a yes is, in percent.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Logic/On %2f off</name>
    <message>
        <source>Changes between on and off with each event.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>event</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changes to the other state.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>on</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is on now.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is off now.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>on at first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The state in the beginning.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Wait</name>
    <message>
        <source>Waits a while and then goes on.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How long, in seconds.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Wait for it%2e</name>
    <message>
        <source>Waits until an event has come a number of times.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>event</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Counts one more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How many are still to come.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>times</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How many events it takes.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Repeat</name>
    <message>
        <source>Runs the boxes inside it again and again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>round done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Linked from inside: the round has come to its end.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>round</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Links to what is inside: a round begins, with its number.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>times</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How many rounds; 0 means without end.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/If %2f else</name>
    <message>
        <source>Sends a value one way or the other.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>condition</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Decides about the values that come afterwards.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The value that is sent on.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>then</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The value, when the condition is true.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>else</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The value, when the condition is false.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Which one%3f</name>
    <message>
        <source>Chooses an output by the text that comes in.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text that decides.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text is the first one.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>second</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text is the second one.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>third</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text is the third one.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none of them</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text is another one.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>texts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The three texts, with commas between them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>exact</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Capital letters and spaces matter.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Only once</name>
    <message>
        <source>Lets the first event through and no other.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>event</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Passes through the first time.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forgets what came before.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>once</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The first event.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Flow control/Time limit</name>
    <message>
        <source>Complains when something takes too long.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>in time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It is finished; the clock is stopped.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>too late</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The time is over.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How long, in seconds.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Remember</name>
    <message>
        <source>Keeps a value under a name, even when the robot is switched off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The value to keep.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The name under which the value is kept.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Recall</name>
    <message>
        <source>Gives back a value that was kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The value that was kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unknown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no value of that name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>key</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The name under which the value is kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>otherwise</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What is sent when there is none; nothing when this is empty.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Write to the log</name>
    <message>
        <source>Writes a line into the robot&apos;s log.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What is written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>level</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How important it is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>begins with</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A text in front of what is written.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Join texts</name>
    <message>
        <source>Puts two texts together.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>front</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text in front.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text behind; both are then put together.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The new text.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>between</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What comes between the two.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Split a text</name>
    <message>
        <source>Cuts a text into its parts.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text that is cut.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>part</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each part, one after the other.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>at</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Where it is cut.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Text/Replace %2a and %3f</name>
    <message>
        <source>Replaces what matches a pattern, in which * stands for any text and ? for any one character.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The text that is changed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The new text.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>pattern</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What is looked for.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>by</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What comes in its place.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Calculate%3a + - %2a %2f</name>
    <message>
        <source>Calculates with two numbers.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>x</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The first number.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The second number; the calculation is then done.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The calculation has no result.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>operation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What is done with them.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Round</name>
    <message>
        <source>Rounds a number.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number that is rounded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>digits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How many digits stay after the point.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>direction</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Where a number goes that lies between.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Data/Numbers/Map a range</name>
    <message>
        <source>Turns a number of one range into the matching one of another.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The number in the first range.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The result of the calculation.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>from</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The lower end of the first range.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The upper end of the first range.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>new from</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The lower end of the second range.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>new to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The upper end of the second range.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Empty box</name>
    <message>
        <source>A box with nothing but a start and an end, to write a script for.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Empty diagram</name>
    <message>
        <source>A box with a diagram inside, to put other boxes into.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Empty timeline</name>
    <message>
        <source>A behaviour with an empty timeline, to put movements and boxes onto.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onLoad</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes once, when the behaviour is loaded.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onStart</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the behaviour from its first frame.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onStop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the behaviour where it is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>onStopped</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the last frame has been played.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Box with states</name>
    <message>
        <source>A script that remembers in which state it is: a start for boxes that wait for several things.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>event</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Goes on to the next state.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>state</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The name of the new state.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Greeter</name>
    <message>
        <source>Waits for a face, says hello and waves: an example of a diagram.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>voice</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The voice that speaks; the names of installed voices will do too.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Library:/Templates/Patrol%3a there &amp; back</name>
    <message>
        <source>Walks to and fro until it is stopped: an example of a loop.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>start</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starts the box.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stops the box at once.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>done</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when the box has finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>blocked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comes when something is in the way, with its distance in metres.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>distance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How far it walks, in metres.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
